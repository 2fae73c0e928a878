#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "supportsdk/core/QDIssue.h"
#include "supportsdk/platform/Clock.h"
#include "supportsdk/platform/Export.h"

namespace supportsdk {

class Appearance;
class HistoryViewModel;

/// Hears of another history. Main thread.
class SUPPORTSDK_API HistoryDelegate {
 public:
    virtual ~HistoryDelegate() = default;

    /// Null when the service sent no list.
    virtual void supportUpdateHistory(const std::shared_ptr<HistoryViewModel>& model) {
        (void)model;
    }
};

/// Hears of a row that was chosen. Main thread.
class SUPPORTSDK_API HistoryViewModelDelegate {
 public:
    virtual ~HistoryViewModelDelegate() = default;

    virtual void viewModelDidSelectEntry(HistoryViewModel& model,
                                         const std::shared_ptr<QDIssue>& issue) {
        (void)model, (void)issue;
    }
};

/// The issues of the customer's location, filtered by status and sorted by date. Main thread only.
class SUPPORTSDK_API HistoryViewModel {
 public:
    using Issues = std::vector<std::shared_ptr<QDIssue>>;

    HistoryViewModel(std::shared_ptr<Clock> clock, std::shared_ptr<Appearance> appearance,
                     Issues entries);

    /// Fills `originalEntries` and `sortedEntries`. Issues whose date cannot be read count as
    /// older than all others.
    void sort();

    [[nodiscard]] std::size_t numberOfRows() const { return sortedEntries.size(); }
    /// Tells the delegate; a row that is not there is ignored.
    void didSelectRow(std::size_t row);

    // False until the screen gives them the stored values: a model that arrives while the screen is
    // open shows nothing before that.
    bool sortDescending = false;
    bool showOpen = false;
    bool showResolved = false;
    bool showClosed = false;

    std::weak_ptr<HistoryViewModelDelegate> delegate;
    Issues entries;
    std::shared_ptr<Appearance> appearance;
    /// What `entries` was at the latest sort().
    Issues originalEntries;
    /// The rows.
    Issues sortedEntries;

 private:
    [[nodiscard]] bool shows(const QDIssue& issue) const;

    std::shared_ptr<Clock> clock_;
};

}  // namespace supportsdk
