#include <algorithm>
#include <iterator>
#include <utility>

#include "supportsdk/chat/QDChatViewController.h"
#include "supportsdk/core/Fields.h"

// What a person writes, and what becomes of it.

namespace supportsdk {

namespace {

/// Data that the kit sends for a button or an attachment: nothing that a person has typed.
bool isEnvelope(const std::string& text) {
    if (!text.starts_with('{')) return false;
    const auto json = parseJson(text);
    return json && stringForKey(*json, "secret");
}

std::string joined(const std::vector<std::string>& texts) {
    std::string all;
    for (const auto& text : texts) all += (all.empty() ? "" : "\n") + text;
    return all;
}

}  // namespace

void QDChatViewController::send() {
    if (const auto picture = view.lock()) picture->endEditing();
    if (!entryView) return;
    const auto text = entryView->text();
    const bool isText = !text.empty() && text != entryView->placeholder;
    // What could not go out stays in the bar, so that nobody has to type it again.
    if (isText && !sendLine(text, false)) return;
    entryView->reset();
}

bool QDChatViewController::sendLine(const std::string& text, bool sendOnly) {
    return reportUnsent(platform(), ownsConversation()
                                        ? engine_->sendGroupchatMessage(text, sendOnly)
                                        : ChatSend::offline);
}

bool QDChatViewController::reportUnsent(const Platform& platform, ChatSend outcome) {
    const auto tell = [&platform](const std::string& english) {
        platform.progress->showError(platform.localizer->localized(english));
    };
    switch (outcome) {
        case ChatSend::sent:
        case ChatSend::empty:
            return true;
        case ChatSend::tooLong:
            tell("Your message is too long to be sent.");
            return false;
        case ChatSend::offline:
            break;
    }
    tell("You are not connected. Your message has not been sent.");
    return false;
}

void QDChatViewController::chatDidNotSend(QuorrandChat& /*chat*/,
                                          const std::vector<std::string>& texts) {
    platform().progress->showError(localized("Your message has not been sent."));
    std::vector<std::string> typed;
    std::remove_copy_if(texts.begin(), texts.end(), std::back_inserter(typed), isEnvelope);
    if (!typed.empty()) putBack(typed);
}

void QDChatViewController::putBack(const std::vector<std::string>& texts) {
    // Nobody would find it in the bar of a screen that has been left.
    if (!hasLeftView_ && entryView && entryView->text().empty()) {
        entryView->setText(joined(texts));
    } else {
        warn(localized("Your message has not been sent.") + "\n\n" + joined(texts));
    }
}

void QDChatViewController::enableSendButton(bool enabled) {
    if (!entryView) return;
    entryView->enableSendButton(enabled);
    if (const auto picture = view.lock()) picture->entryDidChange();
}

void QDChatViewController::didChangeText(const std::string& text) {
    checkRoomStatus();
    enableSendButton(!text.empty());
}

void QDChatViewController::addMentionToInput(const std::optional<std::string>& mentioned) {
    if (!entryView || !mentioned || mentioned->empty()) return;
    entryView->addText(engine_->getInfoType("alias", mentioned).value_or(*mentioned));
}

void QDChatViewController::resetMentionSuggestions() {
    // Every line of a stranger leads here, and sorting thousands of names takes its time.
    const auto revision = engine_->participantsRevision();
    if (std::exchange(mentionsRevision_, revision) == revision) return;
    mentionSuggestions = engine_->createMentionSuggestions();
    if (entryView) entryView->resetMentionSuggestions();
}

void QDChatViewController::didShowSuggestions(QDChatAutocompletionTableView& list) {
    if (entryView) list.restAbove(entryView->frame.y);
    const auto picture = view.lock();
    if (picture && !std::exchange(areSuggestionsInView_, true)) picture->addSuggestions(list);
}

void QDChatViewController::didHideSuggestions(QDChatAutocompletionTableView& list) {
    const auto picture = view.lock();
    if (picture && std::exchange(areSuggestionsInView_, false)) picture->removeSuggestions(list);
}

void QDChatViewController::didSelectAttach() {
    // The list is as it was when the person comes back from choosing.
    engine_->isActionRequested = true;
    attach();
}

}  // namespace supportsdk
