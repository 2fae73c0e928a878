#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "supportsdk/chat/ChatFrame.h"
#include "supportsdk/chat/QDChatAutocompletionTableView.h"
#include "supportsdk/chat/QDExpandingTextView.h"
#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Images.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

class QuorrandChat;

/// Hears of the entry bar. Main thread; an operation that is not overridden is silence. Every
/// operation may change the bar and let go of it.
class QDChatMessageEntryViewDelegate {
 public:
    virtual ~QDChatMessageEntryViewDelegate() = default;

    /// After each change, whoever made it.
    virtual void didChangeText(const std::string& text) { (void)text; }
    virtual void didSelectAttach() {}
    virtual void didSelectSend() {}
    /// Put the list above the bar, with restAbove(), and into the view, if it is not there yet. Its
    /// rows are new; told again for each change of the text that has suggestions.
    virtual void didShowSuggestions(QDChatAutocompletionTableView& list) { (void)list; }
    /// Take the list out of the view, if it is there.
    virtual void didHideSuggestions(QDChatAutocompletionTableView& list) { (void)list; }
};

/// The bar in which the user types, with its buttons and the list of suggestions: its state,
/// without its picture. Whoever draws it hands the user's text to setText(), presses to attach()
/// and send(), and chosen rows to the list. Main thread.
class SUPPORTSDK_API QDChatMessageEntryView
    : public std::enable_shared_from_this<QDChatMessageEntryView>,
      public QDExpandingTextViewDelegate,
      public QDChatAutocompletionTableViewDelegate {
 public:
    /// A bar without a frame is as high as `nominalHeight`.
    static std::shared_ptr<QDChatMessageEntryView> messageEntryViewWithFrame(
        const std::shared_ptr<QuorrandChat>& chat, const ChatFrame& frame = {});

    [[nodiscard]] const std::string& text() const { return messageTextView->text(); }
    /// As typed: enables the send button, looks for suggestions and tells the delegate.
    void setText(const std::string& text) { messageTextView->setText(text); }
    /// Appends, without looking for suggestions.
    void addText(const std::string& text);
    /// Puts a suggestion in the place of the last word, or of all text when it has no blank.
    void addWord(const std::string& word);
    /// Empties the bar.
    void reset() { messageTextView->reset(); }
    void resignFirstResponder() { messageTextView->resignFirstResponder(); }

    /// The user pressed the attach button.
    void attach();
    /// The user pressed the send button.
    void send();
    [[nodiscard]] bool isSendEnabled() const { return isSendEnabled_; }
    void enableSendButton(bool enabled) { isSendEnabled_ = enabled; }
    /// Enabled exactly when there is text.
    void enableSendButton() { enableSendButton(!text().empty()); }
    /// Of the send button's title, in the look of this moment.
    [[nodiscard]] Color sendButtonColor() const;
    /// The buttons' pictures; null when the kit's resources lack them.
    [[nodiscard]] ImagePtr sendImage() const;
    [[nodiscard]] ImagePtr paperclipImage() const;

    void showAutocompletionView();
    void hideAutocompletionView();
    /// Who may be mentioned has changed.
    void resetMentionSuggestions();

    void textViewDidChangeText(QDExpandingTextView& textView) override;
    void textViewDidClear(QDExpandingTextView& textView) override;
    /// The bar grows upwards with a text view that is higher than `nominalHeight`.
    void textViewDidResize(QDExpandingTextView& textView) override;
    void textViewDone(QDExpandingTextView& textView) override;

    /// A sample answer, always the same.
    std::vector<std::string> autoCompletionSuggestionsFor(QDChatAutocompletionTableView& list,
                                                          const std::string& text) override;
    void autoCompletionDidSelectAutoCompleteSuggestionWithText(QDChatAutocompletionTableView& list,
                                                               const std::string& text) override;
    void autoCompletionDidSelectAutoCompleteSuggestionWithIndex(QDChatAutocompletionTableView& list,
                                                                std::size_t index);
    void autoCompletionDidComplete(QDChatAutocompletionTableView& list);

    /// Shown while there is no text.
    const std::string placeholder;
    std::weak_ptr<QDChatMessageEntryViewDelegate> delegate;
    // Never null.
    const std::shared_ptr<QDExpandingTextView> messageTextView;
    const std::shared_ptr<QDChatAutocompletionTableView> autocompletionTableView;
    /// In points.
    double nominalHeight = 40.0;
    /// In the coordinates of the screen.
    ChatFrame frame;

    // Held for hosts.
    std::int32_t type = 0;
    double offset = 0;
    std::string textViewText;
    std::vector<std::string> mentionSuggestions;
    std::vector<std::string> suggestions;
    std::vector<std::string> suggestionOptions;

 private:
    explicit QDChatMessageEntryView(const std::shared_ptr<QuorrandChat>& chat);

    void tellText();

    const std::weak_ptr<QuorrandChat> chat_;
    bool isSendEnabled_ = false;
};

}  // namespace supportsdk
