#pragma once

#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "supportsdk/platform/Images.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

class QuorrandChat;

/// A picture in the place of an emoticon's text.
struct AnimatedTextAttachment {
    /// What stood there, as it was written: "(Smile)".
    std::string text;
    /// The frame to show where nothing moves: of a picture with three frames or more the middle
    /// one.
    ImagePtr image;
    /// All frames; a still picture has one.
    std::shared_ptr<const AnimatedImage> animation;
};

/// Text in one colour and size with pictures in it.
struct StyledText {
    using Piece = std::variant<std::string, AnimatedTextAttachment>;

    static constexpr double systemFontSize = 14.0;

    std::vector<Piece> pieces;
    Color color;
    /// In points.
    double fontSize = systemFontSize;

    /// The text as it was written, emoticons included.
    [[nodiscard]] std::string plainText() const;
};

/// `text` with a picture for each "(word)", of whatever case, that the engine knows as an emoticon.
/// Main thread.
[[nodiscard]] StyledText attributedStringFromChatMessage(const QuorrandChat& chat,
                                                         const std::string& text);

}  // namespace supportsdk
