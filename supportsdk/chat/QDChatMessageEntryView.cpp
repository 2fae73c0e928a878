#include "supportsdk/chat/QDChatMessageEntryView.h"

#include <algorithm>

#include "supportsdk/chat/QuorrandChat.h"

namespace supportsdk {

QDChatMessageEntryView::QDChatMessageEntryView(const std::shared_ptr<QuorrandChat>& chat)
    : placeholder(chat->platform->localizer->localized("Enter message")),
      messageTextView(std::make_shared<QDExpandingTextView>()),
      autocompletionTableView(
          QDChatAutocompletionTableView::autocompletionTableViewWithFrame(chat)),
      chat_(chat) {}

std::shared_ptr<QDChatMessageEntryView> QDChatMessageEntryView::messageEntryViewWithFrame(
    const std::shared_ptr<QuorrandChat>& chat, const ChatFrame& frame) {
    std::shared_ptr<QDChatMessageEntryView> bar(new QDChatMessageEntryView(chat));
    bar->frame = frame;
    if (frame.height == 0) bar->frame.height = bar->nominalHeight;
    bar->messageTextView->delegate = bar;
    bar->autocompletionTableView->autoCompleteDelegate = bar;
    return bar;
}

void QDChatMessageEntryView::addText(const std::string& text) {
    messageTextView->addText(text);
    enableSendButton();
    tellText();
}

void QDChatMessageEntryView::addWord(const std::string& word) {
    const auto blank = text().rfind(' ');
    messageTextView->replaceText(blank == std::string::npos ? word
                                                            : text().substr(0, blank + 1) + word);
    enableSendButton();
    tellText();
}

void QDChatMessageEntryView::attach() {
    if (const auto listener = delegate.lock()) listener->didSelectAttach();
}

void QDChatMessageEntryView::send() {
    if (const auto listener = delegate.lock()) listener->didSelectSend();
}

Color QDChatMessageEntryView::sendButtonColor() const {
    const auto chat = chat_.lock();
    if (!chat) return {};
    return isSendEnabled_ ? chat->appearance.entryViewButtonColor
                          : chat->appearance.entryViewButtonDisabledColor;
}

ImagePtr QDChatMessageEntryView::sendImage() const {
    const auto chat = chat_.lock();
    return chat ? chat->appearance.chatSendButtonImage : nullptr;
}

ImagePtr QDChatMessageEntryView::paperclipImage() const {
    const auto chat = chat_.lock();
    return chat ? chat->appearance.chatAttachmentButtonImage : nullptr;
}

void QDChatMessageEntryView::showAutocompletionView() {
    auto& list = *autocompletionTableView;
    list.setHeight(QDChatAutocompletionTableView::height());
    list.isHidden = false;
    if (const auto listener = delegate.lock()) listener->didShowSuggestions(list);
}

void QDChatMessageEntryView::hideAutocompletionView() {
    autocompletionTableView->isHidden = true;
    if (const auto listener = delegate.lock())
        listener->didHideSuggestions(*autocompletionTableView);
}

void QDChatMessageEntryView::resetMentionSuggestions() {
    autocompletionTableView->resetMentionSuggestions();
    autocompletionTableView->reloadData();
}

void QDChatMessageEntryView::textViewDidChangeText(QDExpandingTextView& textView) {
    enableSendButton();
    if (autocompletionTableView->findSuggestionsForTextView(textView)) {
        showAutocompletionView();
        autocompletionTableView->reloadData();
    } else {
        hideAutocompletionView();
    }
    tellText();
}

void QDChatMessageEntryView::textViewDidClear(QDExpandingTextView& /*textView*/) {
    enableSendButton();
    hideAutocompletionView();
    tellText();
}

void QDChatMessageEntryView::textViewDidResize(QDExpandingTextView& textView) {
    frame.setHeightFromBottom(std::max(nominalHeight, textView.frame().height));
}

void QDChatMessageEntryView::textViewDone(QDExpandingTextView& textView) {
    textView.resignFirstResponder();
}

std::vector<std::string> QDChatMessageEntryView::autoCompletionSuggestionsFor(
    QDChatAutocompletionTableView& /*list*/, const std::string& /*text*/) {
    return {"hostel", "caret", "carrot", "house", "horse"};
}

void QDChatMessageEntryView::autoCompletionDidSelectAutoCompleteSuggestionWithText(
    QDChatAutocompletionTableView& /*list*/, const std::string& text) {
    // The keyboard is still there: a shorter text does not move the bar until the next change.
    const auto before = frame;
    addWord(text);
    frame = before;
    hideAutocompletionView();
}

void QDChatMessageEntryView::autoCompletionDidSelectAutoCompleteSuggestionWithIndex(
    QDChatAutocompletionTableView& /*list*/, std::size_t index) {
    if (const auto chat = chat_.lock()) {
        chat->platform->log->write("QDChatMessageEntryView - Suggestion chosen: " +
                                   std::to_string(index));
    }
    enableSendButton(true);
}

void QDChatMessageEntryView::autoCompletionDidComplete(QDChatAutocompletionTableView& /*list*/) {
    resignFirstResponder();
    enableSendButton();
}

void QDChatMessageEntryView::tellText() {
    // A copy, because the listener may change the text.
    const auto now = text();
    if (const auto listener = delegate.lock()) listener->didChangeText(now);
}

}  // namespace supportsdk
