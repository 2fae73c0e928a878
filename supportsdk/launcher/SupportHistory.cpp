#include "supportsdk/core/Fields.h"
#include "supportsdk/core/QDIssue.h"
#include "supportsdk/core/Support.h"
#include "supportsdk/launcher/HistoryViewModel.h"

namespace supportsdk {

void Support::getHistory() {
    if (!features.historyEnabled) return;
    isHistoryRequested = true;
    historyEntries.clear();
    // Settings ask before the customer is known and again after it, and answers overtake each
    // other: what the latest question brought must not be replaced by an earlier one's answer.
    executeGet("/issues/history?members_locations_id=" + identity.membersLocationsId.text(),
               endpoint, Json(),
               [weak = weak_from_this(), request = ++latestHistoryRequest_](const Json& response) {
                   const auto self = weak.lock();
                   if (self && request == self->latestHistoryRequest_)
                       self->historyDidArrive(response);
               });
}

void Support::historyDidArrive(const Json& response) {
    isHistoryRequested = false;
    const auto status = integerForKey(response, "status");
    if (status && *status != 200) {
        platform->progress->dismiss();
        return;
    }
    const auto* results = valueForKey(response, "results");
    if (!results || !results->is_array()) {
        updateHistoryDelegateWithModel(nullptr);
        return;
    }
    historyEntries.clear();
    for (const auto& entry : *results) historyEntries.push_back(std::make_shared<QDIssue>(entry));
    historyViewModel =
        std::make_shared<HistoryViewModel>(platform->clock, appearance, historyEntries);
    updateHistoryDelegateWithModel(historyViewModel);
}

void Support::updateHistoryDelegateWithModel(const std::shared_ptr<HistoryViewModel>& model) {
    if (const auto told = historyDelegate.lock()) told->supportUpdateHistory(model);
}

}  // namespace supportsdk
