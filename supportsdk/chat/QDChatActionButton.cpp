#include "supportsdk/chat/QDChatActionButton.h"

#include <algorithm>
#include <cmath>

#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/chat/TextSizeEstimate.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk {

namespace {

/// Labels may be numbers; a whole one shows no fraction.
std::string labelText(const Json* value) {
    constexpr double exactIntegers = 9007199254740992.0;
    if (!value) return "";
    if (const auto* text = value->get_ptr<const std::string*>()) return *text;
    if (const auto* number = value->get_ptr<const double*>()) {
        if (std::trunc(*number) == *number && std::abs(*number) < exactIntegers)
            return std::to_string(static_cast<std::int64_t>(*number));
    }
    return value->is_number() ? dumpJson(*value) : "";
}

bool holds(const std::vector<std::string>& keys, const std::string& key) {
    return std::find(keys.begin(), keys.end(), key) != keys.end();
}

Color opaque(Color color) {
    color.alpha = 255;
    return color;
}

}  // namespace

QDChatActionButton::QDChatActionButton(const std::shared_ptr<QuorrandChat>& chat, const Json& entry)
    : key(stringForKey(entry, "key")),
      lbl(labelText(valueForKey(entry, "lbl"))),
      uri(stringForKey(entry, "uri")),
      chat_(chat) {
    setup();
}

void QDChatActionButton::setup() {
    const auto chat = chat_.lock();
    if (!chat) return;
    label = lbl;
    action = uri;
    isSelected = key && holds(chat->selectedActions, *key);
    const auto emoticon = chat->emoticonsByName.find(label);
    image = emoticon == chat->emoticonsByName.end() ? nullptr
                                                    : chat->imageForEmoticon(emoticon->second);
    if (image) {
        size = emoticonSize;
    } else {
        attributedString = attributedStringFromChatMessage(*chat, label);
        attributedString.fontSize = titleFontSize;
        size = calculateButtonSizeWithText(attributedString, titleFontSize);
    }
    updateButtonLook();
}

void QDChatActionButton::performAction() {
    if (!isEnabled) return;
    // The listeners may lead to the end of the line that owns this button.
    const auto self = weak_from_this().lock();
    isSelected = !isSelected;
    if (const auto chat = chat_.lock(); chat && key && !holds(chat->selectedActions, *key))
        chat->selectedActions.push_back(*key);
    updateButtonLook();
    const auto handler = handleButtonAction;
    const auto listener = delegate.lock();
    if (handler) handler(label, action);
    if (listener) listener->buttonDidPerformAction(*this, action.value_or(""));
}

void QDChatActionButton::updateButtonLook() {
    const auto chat = chat_.lock();
    if (!chat) return;
    const auto& look = chat->appearance;
    backgroundColor = opaque(isSelected ? look.localColor : look.chatActionButtonBackgroundColor);
    borderColor = look.chatActionButtonBorderColor;
    attributedString.color = look.chatActionButtonTextColor;
    selectedTextColor_ = look.chatActionButtonSelectedTextColor;
}

void QDChatActionButton::setColor(const Color& color) {
    brandColor = color;
    backgroundColor = color;
}

StyledText QDChatActionButton::selectedString() const {
    auto selected = attributedString;
    selected.color = selectedTextColor_;
    return selected;
}

ChatCellSize QDChatActionButton::calculateButtonSizeWithText(const StyledText& text,
                                                             double fontSize) {
    return estimatedTextSize(text, fontSize, maximumTitleWidth);
}

}  // namespace supportsdk
