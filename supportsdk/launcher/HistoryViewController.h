#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "supportsdk/core/Support.h"
#include "supportsdk/launcher/HistoryRow.h"
#include "supportsdk/launcher/HistoryViewModel.h"
#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Screens.h"

namespace supportsdk {

class SupportButton;

/// "History": the customer's issues, each of which opens its chat. Main thread only.
class SUPPORTSDK_API HistoryViewController : public ScreenController,
                                             public HistoryDelegate,
                                             public HistoryViewModelDelegate {
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

    [[nodiscard]] std::string_view className() const override { return "HistoryViewController"; }
    void viewDidLoad() override;
    void viewWillAppear() override;
    void viewWillDisappear() override;

    [[nodiscard]] std::size_t numberOfRows() const;
    /// Empty texts when there is no such row.
    [[nodiscard]] HistoryRow row(std::size_t index) const;
    void didSelectRow(std::size_t index);

    /// Gives Support's model the stored switches; one that was never stored is on.
    void loadActionSettings();
    void supportUpdateHistory(const std::shared_ptr<HistoryViewModel>& model) override;
    void viewModelDidSelectEntry(HistoryViewModel& model,
                                 const std::shared_ptr<QDIssue>& issue) override;
    /// Pushes the issue's chat, read-only unless the issue is open; says so when there is none.
    void displayChatWithIssue(const std::shared_ptr<QDIssue>& issue);
    /// A resolved issue that the person has not rated: for now, its chat.
    void displayRatingWithIssue(const std::shared_ptr<QDIssue>& issue);
    void back();

    const std::shared_ptr<Support> support;
    const std::weak_ptr<SupportButton> supportButton;
    std::weak_ptr<View> view;

 private:
    HistoryViewController(std::shared_ptr<Support> support, std::weak_ptr<SupportButton> button);

    void reloadTable();
    [[nodiscard]] std::string localized(const char* english) const;
    [[nodiscard]] std::shared_ptr<HistoryViewController> self();

    /// What the table shows: it keeps the former model until it is told of another one.
    std::shared_ptr<HistoryViewModel> shown_;
    bool isRetrievingShown_ = false;
};

}  // namespace supportsdk
