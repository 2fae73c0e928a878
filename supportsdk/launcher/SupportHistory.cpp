#include "supportsdk/core/Fields.h"
#include "supportsdk/core/QDIssue.h"
#include "supportsdk/core/Support.h"

namespace supportsdk {

void Support::getHistory() {
    if (!features.historyEnabled) return;
    isHistoryRequested = true;
    historyEntries.clear();
    executeGet("/issues/history?members_locations_id=" + identity.membersLocationsId.text(),
               endpoint, Json(), [weak = weak_from_this()](const Json& response) {
                   const auto self = weak.lock();
                   if (!self) return;
                   self->isHistoryRequested = false;
                   const auto status = integerForKey(response, "status");
                   if (status && *status != 200) {
                       self->platform->progress->dismiss();
                       return;
                   }
                   self->historyEntries.clear();
                   for (const auto& entry : arrayForKey(response, "results")) {
                       self->historyEntries.push_back(std::make_shared<QDIssue>(entry));
                   }
               });
}

}  // namespace supportsdk
