#include "supportsdk/core/Fields.h"
#include "supportsdk/core/QDIssue.h"
#include "supportsdk/core/Support.h"
#include "supportsdk/launcher/HistoryViewModel.h"

namespace supportsdk {

void Support::getHistory() {
    if (!features.historyEnabled) return;
    isHistoryRequested = true;
    historyEntries.clear();
    executeGet("/issues/history?members_locations_id=" + identity.membersLocationsId.text(),
               endpoint, Json(),
               [weak = weak_from_this(), request = ++latestHistoryRequest_,
                location = identity.membersLocationsId.text()](const Json& response) {
                   const auto self = weak.lock();
                   if (!self) return;
                   // Settings ask before the customer is known and again after it: what belongs to
                   // another location, or was asked before what is there, came too late.
                   const bool isOvertaken = request < self->shownHistoryRequest_ ||
                                            location != self->identity.membersLocationsId.text();
                   if (request == self->latestHistoryRequest_ || !isOvertaken)
                       self->historyDidArrive(response, request);
               });
}

void Support::historyDidArrive(const Json& response, std::uint64_t request) {
    const bool isLatest = request == latestHistoryRequest_;
    if (isLatest) isHistoryRequested = false;
    const auto status = integerForKey(response, "status");
    if (status && *status != 200) {
        if (isLatest) platform->progress->dismiss();
        return;
    }
    const auto* results = valueForKey(response, "results");
    if (!results || !results->is_array()) {
        if (isLatest) updateHistoryDelegateWithModel(nullptr);
        return;
    }
    shownHistoryRequest_ = request;
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
