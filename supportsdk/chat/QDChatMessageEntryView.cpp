#include "supportsdk/chat/QDChatMessageEntryView.h"

namespace supportsdk {

QDChatMessageEntryView::QDChatMessageEntryView(const Localizer& localizer)
    : placeholder(localizer.localized("Enter message")) {}

void QDChatMessageEntryView::setText(const std::string& text) {
    text_ = text;
    enableSendButton();
    if (const auto listener = delegate.lock()) listener->didChangeText(text_);
}

void QDChatMessageEntryView::addText(const std::string& text) {
    setText(text_ + text);
}

void QDChatMessageEntryView::send() {
    if (const auto listener = delegate.lock()) listener->didSelectSend();
}

}  // namespace supportsdk
