#include "supportsdk/chat/QDChatAutocompletionTableView.h"

#include <algorithm>

#include "supportsdk/chat/Blanks.h"
#include "supportsdk/chat/QDExpandingTextView.h"
#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/core/CaseFolding.h"

namespace supportsdk {

namespace {

/// A blank behind a word does not end it: the word stays the current one until the next begins.
std::string lastWord(std::string_view text) {
    text = withoutOuterBlanks(text);
    const auto blank = text.rfind(' ');
    return std::string(blank == std::string_view::npos ? text : text.substr(blank + 1));
}

QDSuggestionType typeOf(const std::string& word) {
    if (word.starts_with('@')) return QDSuggestionType::mention;
    if (word.starts_with('(')) return QDSuggestionType::emoticon;
    return QDSuggestionType::none;
}

}  // namespace

std::shared_ptr<QDChatAutocompletionTableView>
QDChatAutocompletionTableView::autocompletionTableViewWithFrame(
    const std::shared_ptr<QuorrandChat>& chat, const ChatFrame& frame) {
    std::shared_ptr<QDChatAutocompletionTableView> list(new QDChatAutocompletionTableView(chat));
    list->frame = frame;
    return list;
}

bool QDChatAutocompletionTableView::findSuggestionsForTextView(
    const QDExpandingTextView& textView) {
    if (textView.text().empty()) return false;
    textViewText_ = textView.text();
    frame.x = textView.frame().x;
    frame.width = textView.frame().width;
    setHeight(height());

    const auto word = lastWord(textViewText_);
    const auto wordType = typeOf(word);
    if (wordType == QDSuggestionType::none) return false;
    type = wordType;
    if (!substringIsInDictionary(word)) return false;
    if (suggestionOptions_.size() == 1 && caseFolded(suggestionOptions_[0]) == caseFolded(word))
        return false;
    setHeight(currentHeight());
    return true;
}

bool QDChatAutocompletionTableView::substringIsInDictionary(const std::string& word) {
    const auto chat = chat_.lock();
    if (!chat) return false;
    const auto folded = caseFolded(word);
    std::vector<std::string> found;
    if (type == QDSuggestionType::mention) {
        resetMentionSuggestions();
        for (std::size_t index = 0; index < foldedSuggestions_.size(); ++index) {
            if (contains(foldedSuggestions_[index], folded))
                found.push_back(suggestionsDictionary_[index]);
        }
    } else if (type == QDSuggestionType::emoticon) {
        for (const auto& [key, fileName] : chat->emoticonsByName) {
            if (contains(caseFolded(key), folded)) found.push_back(key);
        }
    }
    if (found.empty()) return false;
    suggestionOptions_ = std::move(found);
    return true;
}

bool QDChatAutocompletionTableView::contains(const std::wstring& candidate,
                                             const std::wstring& word) {
    const auto at = word.empty() ? std::wstring::npos : candidate.find(word);
    currentRange_ = at == std::wstring::npos ? std::nullopt : std::optional(Range{at, word.size()});
    return currentRange_.has_value();
}

void QDChatAutocompletionTableView::resetMentionSuggestions() {
    const auto chat = chat_.lock();
    if (!chat || revision_ == chat->participantsRevision()) return;
    revision_ = chat->participantsRevision();
    suggestionsDictionary_ = chat->createMentionSuggestions();
    foldedSuggestions_.clear();
    foldedSuggestions_.reserve(suggestionsDictionary_.size());
    for (const auto& suggestion : suggestionsDictionary_)
        foldedSuggestions_.push_back(caseFolded(suggestion));
}

double QDChatAutocompletionTableView::currentHeight() const {
    return std::min(static_cast<double>(numberOfRows()) * rowHeight, height());
}

void QDChatAutocompletionTableView::restAbove(double topOfBar) {
    frame.height = currentHeight();
    frame.y = topOfBar - frame.height - gap;
}

std::optional<QDChatAutocompletionTableView::Row> QDChatAutocompletionTableView::rowAt(
    std::size_t row) const {
    const auto chat = chat_.lock();
    if (!chat || row >= suggestionOptions_.size()) return std::nullopt;
    const auto& entry = suggestionOptions_[row];
    Row shown{entry, chat->appearance.labelColor, std::nullopt, nullptr};
    if (type != QDSuggestionType::emoticon) return shown;
    std::erase_if(shown.text, [](char letter) { return letter == '(' || letter == ')'; });
    shown.detail = entry;
    const auto known = chat->emoticonsByName.find(entry);
    if (known != chat->emoticonsByName.end()) shown.image = chat->imageForEmoticon(known->second);
    return shown;
}

void QDChatAutocompletionTableView::didSelectRow(std::size_t row) {
    const auto listener = autoCompleteDelegate.lock();
    if (!listener || row >= suggestionOptions_.size()) return;
    // A copy, because the choice leads to other rows.
    const auto chosen = suggestionOptions_[row];
    listener->autoCompletionDidSelectAutoCompleteSuggestionWithText(*this, chosen);
}

void QDChatAutocompletionTableView::reloadData() {
    if (const auto picture = view.lock()) picture->reloadData();
}

}  // namespace supportsdk
