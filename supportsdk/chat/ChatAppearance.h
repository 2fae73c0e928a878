#pragma once

#include <optional>
#include <string>

#include "supportsdk/platform/Images.h"
#include "supportsdk/theme/Colors.h"

namespace supportsdk {

/// A picture that is painted in one colour and stretched between its caps, which are in points.
struct ChatBubbleImage {
    /// Null when the kit's resources lack it.
    ImagePtr image;
    Color tint;
    double leftCap = 0;
    double topCap = 0;
};

/// The chat's colours and pictures, with their defaults. The chat screen overwrites some of them
/// with those of the theme each time it comes on view.
struct ChatAppearance {
    Color labelColor = colorFromRGB(0x000000);
    Color backgroundColor = colorFromRGB(0xFFFFFF);
    Color localTextColor = colorFromRGB(0xFFFFFF);
    Color remoteTextColor = colorFromRGB(0x000000);
    Color localColor = colorFromRGB(0x147EFB);
    Color remoteColor = colorFromRGB(0xE5E5EA);
    Color timeStampColor = labelColor;
    Color chatNavigationBarBackgroundColor = colorFromRGB(0xF7F7F7);
    Color selectedChatActionButtonTextColor = colorFromRGB(0x000000);
    Color entryViewBorderColor = colorFromRGB(0xC2C2C2);
    Color entryViewButtonColor = colorFromRGB(0x838383);
    Color entryViewButtonDisabledColor = colorFromRGB(0xACACAC);
    Color participantTextColor = colorFromRGB(0xAAAAAA);
    ChatBubbleImage remoteChatBubbleImage{nullptr, remoteColor, 21, 14};
    ChatBubbleImage localChatBubbleImage{nullptr, localColor, 15, 14};
    Color chatActionButtonTextColor = labelColor;
    Color chatActionButtonBackgroundColor = backgroundColor;
    Color chatActionButtonBorderColor = labelColor;
    Color chatActionButtonSelectedTextColor = colorFromRGB(0xFFFFFF);
    /// Null when the kit's resources lack them.
    ImagePtr chatAttachmentButtonImage;
    ImagePtr chatSendButtonImage;

    // Without a default: absent until a screen sets them.
    std::optional<Color> colorLinkAndButtonTint;
    std::optional<Color> linkAndButtonTintColor;
    std::optional<Color> sendButtonEnabledColor;
    std::optional<Color> sendButtonDisabledColor;
    std::optional<Color> refidTextColor;
    std::optional<Color> iconColor;
    std::optional<std::string> fontName;
    std::optional<double> attachmentIconHeight;
    std::optional<Color> localChatBubbleBackgroundColor;
    std::optional<Color> remoteChatBubbleBackgroundColor;
    std::optional<Color> localChatBubbleTextColor;
    std::optional<Color> remoteChatBubbleTextColor;
};

}  // namespace supportsdk
