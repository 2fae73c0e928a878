#include "service/chat/Envelope.h"
#include "service/rest/Desk.h"
#include "service/state/Identifiers.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {

Answer filePut(Desk& desk, const Call& call) {
    const auto comm = findOwn(desk, kind::comm, call.id, call);
    if (!comm) return failure(404, "This chat is unknown.");
    const auto part = call.files.find("file-data");
    if (part == call.files.end()) return failure(400, "The part \"file-data\" is missing.");

    const auto id = randomHex(16);
    desk.store.putBytes(id, part->second.content);
    desk.store.put(kind::upload, id,
                   {{"id", id},
                    {"comm_id", call.id},
                    {"fields", call.fields},
                    {"file_name", part->second.fileName},
                    {"content_type", part->second.contentType},
                    {"size", part->second.content.size()}});
    const auto key = "members_users:" + stringForKey(*comm, "members_users_id").value_or("");
    const auto participants = desk.rooms.eligibleParticipants(*comm);
    const auto name = stringForKey(dictionaryForKey(participants, key), "name");
    const auto url = call.base + "/files/" + id;
    return results(
        Json::array({makeEnvelope("attachment", {{"attachment", {{"url", url}, {"preview", url}}}},
                                  {key, name.value_or(""), call.base + avatarPath(key)})}));
}

/// The address is the permission: nobody guesses it.
Answer fileGet(const Desk& desk, const Call& call) {
    const auto upload = desk.store.get(kind::upload, call.id);
    auto content = desk.store.bytes(call.id);
    if (!upload || !content) return failure(404, "This file is unknown.");
    return bytes(std::move(*content), stringForKey(*upload, "content_type").value_or(""));
}

}  // namespace

void addFileRoutes(Router& router, Desk& desk) {
    router.add("POST", "/sdk/v1/chat/filePut/*", Body::form,
               [&desk](Call& call) { return filePut(desk, call); });
    router.add("GET", "/files/*", Body::none, [&desk](Call& call) { return fileGet(desk, call); });
}

}  // namespace supportsdk::service
