#include "supportsdk/launcher/HistoryViewModel.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "supportsdk/launcher/CachedClock.h"
#include "supportsdk/launcher/HistoryRow.h"

namespace supportsdk {

namespace {

struct DatedIssue {
    std::optional<Clock::Time> created;
    std::shared_ptr<QDIssue> issue;
};

}  // namespace

HistoryViewModel::HistoryViewModel(std::shared_ptr<Clock> clock, std::shared_ptr<Appearance> theme,
                                   Issues issues)
    : entries(std::move(issues)), appearance(std::move(theme)), clock_(std::move(clock)) {}

bool HistoryViewModel::shows(const QDIssue& issue) const {
    if (issue.isOpen()) return showOpen;
    return issue.isResolved() ? showResolved : showClosed;
}

void HistoryViewModel::sort() {
    originalEntries = entries;
    const CachedClock clock(clock_);
    std::vector<DatedIssue> kept;
    for (const auto& issue : entries) {
        if (shows(*issue)) kept.push_back({dateFromIssue(clock, issue->created), issue});
    }
    std::stable_sort(
        kept.begin(), kept.end(), [this](const DatedIssue& one, const DatedIssue& two) {
            return sortDescending ? two.created < one.created : one.created < two.created;
        });
    sortedEntries.clear();
    for (auto& dated : kept) sortedEntries.push_back(std::move(dated.issue));
}

void HistoryViewModel::didSelectRow(std::size_t row) {
    if (row >= sortedEntries.size()) return;
    const auto issue = sortedEntries[row];
    if (const auto told = delegate.lock()) told->viewModelDidSelectEntry(*this, issue);
}

}  // namespace supportsdk
