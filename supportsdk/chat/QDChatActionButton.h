#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "supportsdk/chat/ChatLineParts.h"
#include "supportsdk/chat/StyledText.h"
#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Images.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

class QDChatActionButton;
class QuorrandChat;

/// Hears of buttons. Main thread; an operation that is not overridden is silence.
class ChatActionButtonDelegate {
 public:
    virtual ~ChatActionButtonDelegate() = default;

    /// `action` is the button's address; "" when it has none.
    virtual void buttonDidPerformAction(QDChatActionButton& button, const std::string& action) {
        (void)button, (void)action;
    }
};

/// A button that an agent or bot put into a line. Whether it is selected lives in the engine's
/// `selectedActions`, because the buttons of a line are made anew with the line. Main thread.
class SUPPORTSDK_API QDChatActionButton : public std::enable_shared_from_this<QDChatActionButton> {
 public:
    using Handler =
        std::function<void(const std::string& label, const std::optional<std::string>& action)>;

    // In points.
    static constexpr double titleFontSize = 16.0;
    static constexpr double maximumTitleWidth = 220.0;
    static constexpr ChatCellSize emoticonSize{40.0, 40.0};

    /// Reads "key", "lbl", a text or a number, and "uri" of an entry of a line's actions, and runs
    /// setup().
    QDChatActionButton(const std::shared_ptr<QuorrandChat>& chat, const Json& entry);

    /// Takes label, address, selection, look and title from what was read and from the engine as it
    /// is now.
    void setup();

    /// A tap; nothing happens while it is disabled. Toggles the selection, remembers the key in the
    /// engine's `selectedActions`, where a later tap leaves it, and calls `handleButtonAction` and
    /// then `delegate`. Either may let go of the button.
    void performAction();

    /// The colours of its selection, as the engine's look is now.
    void updateButtonLook();
    /// Paints it in this colour, until updateButtonLook().
    void setColor(const Color& color);
    /// What it says, in the colour of its selection; empty where it shows an `image`.
    [[nodiscard]] StyledText title() const {
        return isSelected ? selectedString() : attributedString;
    }
    /// `attributedString` in the colour of a selected button.
    [[nodiscard]] StyledText selectedString() const;
    /// The room for a title, wrapped at maximumTitleWidth: an estimate, without margins.
    [[nodiscard]] static ChatCellSize calculateButtonSizeWithText(const StyledText& text,
                                                                  double fontSize);

    std::optional<std::string> key;
    /// What the entry says as label; "" when it says nothing.
    std::string lbl;
    std::optional<std::string> uri;

    std::string label;
    /// The address.
    std::optional<std::string> action;
    bool isSelected = false;
    bool isEnabled = true;
    Color backgroundColor;
    Color borderColor;
    std::optional<Color> brandColor;
    /// The title of a button that is not selected.
    StyledText attributedString;
    /// In place of a title, where the label is an emoticon; else null.
    std::shared_ptr<const AnimatedImage> image;
    /// Of its frame; whoever draws it may put in what it has measured.
    ChatCellSize size;
    Handler handleButtonAction;
    /// Nothing in the kit sets it.
    std::weak_ptr<ChatActionButtonDelegate> delegate;

 private:
    std::weak_ptr<QuorrandChat> chat_;
    Color selectedTextColor_;
};

}  // namespace supportsdk
