#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "supportsdk/chat/ChatFrame.h"
#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Images.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

class QDChatAutocompletionTableView;
class QDExpandingTextView;
class QuorrandChat;

enum class QDSuggestionType : std::int32_t { none = 0, mention = 1, emoticon = 2 };

/// Hears what was chosen. Main thread; an operation that is not overridden is silence.
class QDChatAutocompletionTableViewDelegate {
 public:
    virtual ~QDChatAutocompletionTableViewDelegate() = default;

    /// The list never asks it: it looks for itself.
    virtual std::vector<std::string> autoCompletionSuggestionsFor(
        QDChatAutocompletionTableView& list, const std::string& text) {
        (void)list, (void)text;
        return {};
    }
    virtual void autoCompletionDidSelectAutoCompleteSuggestionWithText(
        QDChatAutocompletionTableView& list, const std::string& text) {
        (void)list, (void)text;
    }
};

/// The list above the entry bar: participants to mention for a word that begins with "@",
/// emoticons for one that begins with "(". It finds what to show; the bar shows and hides it, and
/// the screen puts it in its place. Main thread.
class SUPPORTSDK_API QDChatAutocompletionTableView {
 public:
    /// What the list asks of its picture.
    class View {
     public:
        virtual ~View() = default;
        virtual void reloadData() {}
    };

    struct Row {
        /// The participant's alias, or the emoticon without its brackets.
        std::string text;
        Color color;
        /// The emoticon as it is written.
        std::optional<std::string> detail;
        /// Of the emoticon; null when the kit cannot show it.
        std::shared_ptr<const AnimatedImage> image;
    };

    /// In characters of the candidate.
    struct Range {
        std::size_t location = 0;
        std::size_t length = 0;

        bool operator==(const Range&) const = default;
    };

    static constexpr std::string_view reuseName = "AutoCompleteRowIdentifier";
    static constexpr double rowHeight = 30.0;
    /// Between the list and the entry bar.
    static constexpr double gap = 3.0;
    /// The most that the list takes: further rows scroll.
    static constexpr double height() { return 150.0; }

    static std::shared_ptr<QDChatAutocompletionTableView> autocompletionTableViewWithFrame(
        const std::shared_ptr<QuorrandChat>& chat, const ChatFrame& frame = {});

    /// Looks for what the last word of the text could become. True when there is something to show:
    /// then the rows are new, and the frame is as wide as the text view and as high as the rows,
    /// resting on the same bottom edge as before. A word that is complete, ignoring case, and could
    /// become nothing else needs no list.
    bool findSuggestionsForTextView(const QDExpandingTextView& textView);
    /// Whether any candidate of this `type` contains the word, ignoring case. If so those become
    /// the rows, else the rows stay.
    bool substringIsInDictionary(const std::string& word);
    /// The mention list as the participants are now. Cheap while they are the same.
    void resetMentionSuggestions();

    /// That of the rows, but at most height().
    [[nodiscard]] double currentHeight() const;
    /// For the screen, when it shows the list: as high as its rows and just above the entry bar.
    void restAbove(double topOfBar);
    /// A higher or lower list on the same bottom edge.
    void setHeight(double newHeight) { frame.setHeightFromBottom(newHeight); }

    [[nodiscard]] std::size_t numberOfRows() const { return suggestionOptions_.size(); }
    /// Nothing for a row that does not exist.
    [[nodiscard]] std::optional<Row> rowAt(std::size_t row) const;
    /// The user chose a row; nothing happens for one that does not exist.
    void didSelectRow(std::size_t row);
    void reloadData();

    /// The current matches, a row each.
    [[nodiscard]] const std::vector<std::string>& suggestionOptions() const {
        return suggestionOptions_;
    }
    /// The mention list, in the order of the user's language.
    [[nodiscard]] const std::vector<std::string>& suggestionsDictionary() const {
        return suggestionsDictionary_;
    }
    /// Where the word stands in the last candidate that was tested; nothing where it does not.
    [[nodiscard]] const std::optional<Range>& currentRange() const { return currentRange_; }
    /// The text that was looked at last.
    [[nodiscard]] const std::string& textViewText() const { return textViewText_; }

    QDSuggestionType type = QDSuggestionType::none;
    std::weak_ptr<QDChatAutocompletionTableViewDelegate> autoCompleteDelegate;
    std::weak_ptr<View> view;
    /// In the coordinates of the screen.
    ChatFrame frame;
    /// Until the entry bar shows it.
    bool isHidden = true;

    // Held for hosts.
    Json options = Json::object();
    double tableHeight = 0;
    std::vector<std::string> wordTokens;

 private:
    explicit QDChatAutocompletionTableView(const std::shared_ptr<QuorrandChat>& chat)
        : chat_(chat) {}

    [[nodiscard]] bool contains(const std::wstring& candidate, const std::wstring& word);

    const std::weak_ptr<QuorrandChat> chat_;
    std::vector<std::string> suggestionOptions_;
    std::vector<std::string> suggestionsDictionary_;
    /// The same without case, so that a keystroke needs not prepare thousands of names.
    std::vector<std::wstring> foldedSuggestions_;
    /// Of the participants that the mention list was made of.
    std::optional<std::uint64_t> revision_;
    std::optional<Range> currentRange_;
    std::string textViewText_;
};

}  // namespace supportsdk
