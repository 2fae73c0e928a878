#include <utility>

#include "supportsdk/core/Support.h"
#include "supportsdk/proactive/Check.h"
#include "supportsdk/proactive/CheckResponse.h"
#include "supportsdk/proactive/DumpUpload.h"

namespace supportsdk {

namespace {

Json ownerOf(const Identity& identity) {
    Json owner = Json::object();
    const auto add = [&owner](const char* key, const IdentityValue& value) {
        if (value.isSet()) owner[key] = value.json();
    };
    add("members_id", identity.membersId);
    add("members_users_id", identity.membersUsersId);
    add("members_locations_id", identity.membersLocationsId);
    add("members_devices_id", identity.membersDevicesId);
    return owner;
}

}  // namespace

void Support::postChecks(const std::vector<std::shared_ptr<const Check>>& checks,
                         RestCallback success, RestCallback failure) {
    auto records = Json::array();
    for (const auto& check : checks) {
        if (check) records.push_back(check->dict());
    }
    auto body = ownerOf(identity);
    body["checks"] = std::move(records);
    executePost("/technology/putChecks", endpoint, body,
                byIntegerStatus(std::move(success), std::move(failure)));
}

void Support::upload(std::shared_ptr<FileHandle> file, RestCallback success, RestCallback failure) {
    auto completion = byIntegerStatus(std::move(success), failure);
    auto send = [weak = weak_from_this(), completion = std::move(completion),
                 failure = std::move(failure)](DumpBody& body) {
        const auto self = weak.lock();
        if (!self) return;
        if (!body.problem.empty()) {
            if (failure) failure({{"status", 0}, {"message", body.problem}});
            return;
        }
        self->post("/technology/putDump", self->endpoint, "application/json", std::move(body.json),
                   completion);
    };
    platform->backgroundQueue->post([weak = weak_from_this(), owner = ownerOf(identity),
                                     file = std::move(file), send = std::move(send),
                                     queue = platform->mainQueue]() mutable {
        // The pool's end waits for what runs, so a long file is not read for nobody. Only asked,
        // never locked: the last to hold it must not be this thread.
        const auto isWanted = [&weak] { return !weak.expired(); };
        // Shared, since work is copyable and the body is large.
        auto body = std::make_shared<DumpBody>(file ? dumpUploadBody(owner, *file, isWanted)
                                                    : DumpBody{{}, "There is no file."});
        queue->post([body = std::move(body), send = std::move(send)] { send(*body); });
    });
}

}  // namespace supportsdk
