#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "supportsdk/core/Support.h"
#include "supportsdk/launcher/HistoryActionPopupMenu.h"
#include "supportsdk/launcher/HistoryRow.h"
#include "supportsdk/launcher/HistoryViewModel.h"
#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Screens.h"

namespace supportsdk {

class HistoryAvatars;
class SupportButton;

/// "History": the customer's issues, each of which opens its chat. Main thread only.
class SUPPORTSDK_API HistoryViewController : public ScreenController,
                                             public HistoryDelegate,
                                             public HistoryViewModelDelegate,
                                             public HistoryActionPopupMenuDelegate {
 public:
    /// What the screen asks of its picture.
    class View {
     public:
        virtual ~View() = default;
        virtual void reloadTable() = 0;
    };

    /// `support` may not be null.
    static std::shared_ptr<HistoryViewController> create(std::shared_ptr<Support> support,
                                                         std::weak_ptr<SupportButton> button);

    ~HistoryViewController() override;

    [[nodiscard]] std::string_view className() const override { return "HistoryViewController"; }
    void viewDidLoad() override;
    void viewWillAppear() override;
    void viewWillDisappear() override;

    [[nodiscard]] std::size_t numberOfRows() const;
    /// Empty texts when there is no such row. Being asked starts the loading of the row's picture;
    /// the view reloads once it has come.
    [[nodiscard]] HistoryRow row(std::size_t index) const;
    void didSelectRow(std::size_t index);

    // --- The switches (HistoryViewControllerMenu.cpp) ---

    /// Gives Support's model the stored switches; one that was never stored is on. The rows stay as
    /// they are until the model is sorted again.
    void loadActionSettings();
    /// Stores the switches of Support's model; nothing while there is none.
    void saveActionSettings();
    /// Loads the switches, and makes a field of each, as HistoryActionPopupMenu shows them.
    [[nodiscard]] Fields createActionMenuEntries();
    /// Opens the switches over this screen; nothing without the button that was pressed.
    void showActionMenu(const BarButton* sender);
    /// Takes the switches by their position, stores them, and sorts and shows the list again. One
    /// that is missing or has no state stays as it was; further ones are ignored.
    void menuDidUpdateEntries(HistoryActionPopupMenu& menu, const Fields& entries) override;

    // --- The list ---

    void supportUpdateHistory(const std::shared_ptr<HistoryViewModel>& model) override;
    void viewModelDidSelectEntry(HistoryViewModel& model,
                                 const std::shared_ptr<QDIssue>& issue) override;
    /// Pushes the issue's chat, read-only unless the issue is open; says so when there is none.
    void displayChatWithIssue(const std::shared_ptr<QDIssue>& issue);
    /// Opens the rating over this screen.
    void displayRatingWithIssue(const std::shared_ptr<QDIssue>& issue);
    void back();

    const std::shared_ptr<Support> support;
    const std::weak_ptr<SupportButton> supportButton;
    std::weak_ptr<View> view;

 private:
    HistoryViewController(std::shared_ptr<Support> support, std::weak_ptr<SupportButton> button);

    void showBarButtons();
    void reloadTable();
    void dismissRetrieving();
    [[nodiscard]] std::shared_ptr<HistoryViewModel> modelWithSwitches() const;
    [[nodiscard]] std::string localized(const char* english) const;
    [[nodiscard]] std::shared_ptr<HistoryViewController> self();

    /// What the table shows: it keeps the former model until it is told of another one.
    std::shared_ptr<HistoryViewModel> shown_;
    bool isRetrievingShown_ = false;
    const std::unique_ptr<HistoryAvatars> avatars_;
};

}  // namespace supportsdk
