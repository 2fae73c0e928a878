#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "supportsdk/core/Support.h"
#include "supportsdk/knowledge/KBEntryModel.h"
#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Screens.h"

namespace supportsdk {

/// Searches the knowledge base: recent searches, and the results of the latest one. Main thread
/// only.
class SUPPORTSDK_API KBSearchViewController : public ScreenController, public SupportDelegate {
 public:
    /// What the screen asks of its picture.
    class View {
     public:
        virtual ~View() = default;
        /// Rows or headings have changed.
        virtual void reloadTable() = 0;
        /// The search bar's text, its "Cancel" or its focus has changed.
        virtual void searchBarDidChange() = 0;
    };

    enum Section : std::size_t { recent, top, numberOfSections };

    /// `support` may not be null.
    static std::shared_ptr<KBSearchViewController> create(std::shared_ptr<Support> support,
                                                          std::weak_ptr<SupportButton> button);

    [[nodiscard]] std::string_view className() const override { return "KBSearchViewController"; }
    void viewDidLoad() override;
    void viewWillAppear() override;
    void viewWillDisappear() override;

    // --- The search bar ---

    /// The person has changed the text: no search yet.
    void searchBarTextDidChange(const std::string& text);
    void searchBarTextDidEndEditing();
    /// Searches for what stands in the bar.
    void searchBarSearchButtonClicked();
    /// Also gives up the search that is running, as does emptying the bar.
    void searchBarCancelButtonClicked();
    /// Called with the bar's text on each change; does nothing. A hook for hosts that search as the
    /// person types and show a class of their own; every search with results is recorded.
    virtual void doSearch(const std::string& text) { (void)text; }
    /// Searches, and gives up an earlier search that is still running.
    void search(const std::string& text);

    // --- The list ---

    /// Translated; "" for a section without one.
    [[nodiscard]] std::string headingOfSection(std::size_t section) const;
    [[nodiscard]] std::size_t numberOfRows(std::size_t section) const;
    /// "" when there is no such row, or it has no title.
    [[nodiscard]] std::string textOfRow(std::size_t section, std::size_t row) const;
    /// A recent search goes into the bar; an article opens. A row that is not there is ignored.
    void didSelectRow(std::size_t section, std::size_t row);
    /// Opens an article: its text, or without one its address.
    void viewEntry(const std::shared_ptr<KBEntryModel>& entry);
    /// Fetches an article and opens it, unless the screen is left or another one asked for
    /// meanwhile.
    void retrieveKB(const std::string& identifier);
    void saveRecentSearches() const;

    /// Records `searchText`, and shows what was found.
    void supportSearchKBWithModel(const std::shared_ptr<KBViewModel>& model) override;
    void supportSearchKBFailed() override;

    const std::shared_ptr<Support> support;
    const std::weak_ptr<SupportButton> supportButton;
    std::weak_ptr<View> view;

    /// What was searched for, the latest last, kept on this device. It grows without end.
    std::vector<std::string> recentSearches;
    std::vector<std::shared_ptr<KBEntryModel>> topResults;
    bool hideRecentSearches = false;
    /// The text of the latest search.
    std::string searchText;
    /// What stands in the bar at this moment.
    std::string barText;
    bool isCancelButtonShown = false;
    /// The bar has the focus, and the keyboard is up.
    bool isBarFocused = false;

 protected:
    KBSearchViewController(std::shared_ptr<Support> support, std::weak_ptr<SupportButton> button);

 private:
    class Search;
    using Handler = void (KBSearchViewController::*)(const Json&);

    void showRecentSearches();
    void loadRecentSearches();
    void recordSearch();
    [[nodiscard]] RestCallback unlessObsolete(std::uint64_t request, Handler handler);
    void articleDidArrive(const Json& response);
    void articleIsMissing(const Json& response);
    void reloadTable();
    void tellBarDidChange();
    [[nodiscard]] std::string localized(const std::string& english) const;

    bool isOnView_ = false;
    std::shared_ptr<SupportDelegate> latestSearch_;
    std::uint64_t latestArticle_ = 0;
};

}  // namespace supportsdk
