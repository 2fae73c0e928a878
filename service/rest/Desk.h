#pragma once

#include <optional>
#include <string>

#include "service/chat/ChatRooms.h"
#include "service/chat/Issues.h"
#include "service/http/Router.h"
#include "service/state/Journal.h"
#include "service/state/Store.h"

namespace supportsdk::service {

/// All that the calls of the service work on.
struct Desk {
    Store& store;
    Journal& journal;
    ChatRooms& rooms;
    Issues& issues;
};

/// The record of `kind` if it belongs to the calling integration.
std::optional<Json> findOwn(const Desk& desk, const std::string& kind, const std::string& id,
                            const Call& call);
/// All records of `kind` that belong to the calling integration.
std::vector<Json> listOwn(const Desk& desk, const std::string& kind, const Call& call);

void addSettingsRoutes(Router& router, Desk& desk);
void addCustomerRoutes(Router& router, Desk& desk);
void addIssueRoutes(Router& router, Desk& desk);
void addChatRoutes(Router& router, Desk& desk);
void addFileRoutes(Router& router, Desk& desk);
void addFormRoutes(Router& router, Desk& desk);
void addKnowledgeRoutes(Router& router, Desk& desk);
void addJourneyRoutes(Router& router, Desk& desk);
void addDiagnosticsRoutes(Router& router, Desk& desk);
void addAvatarRoutes(Router& router);

}  // namespace supportsdk::service
