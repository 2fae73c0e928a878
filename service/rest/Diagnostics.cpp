#include <openssl/evp.h>

#include <algorithm>

#include "service/rest/Desk.h"
#include "service/state/Identifiers.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {

constexpr const char* owners[] = {"members_id", "members_users_id", "members_locations_id",
                                  "members_devices_id"};

Json record(const std::string& id, const Call& call) {
    Json record{{"id", id},
                {"integration", call.integrationId},
                {"received", dateTimeText(std::chrono::system_clock::now())}};
    for (const char* key : owners) {
        if (const auto owner = stringForKey(call.body, key)) record[key] = *owner;
    }
    return record;
}

bool isCheck(const Json& check) {
    return integerForKey(check, "type") && stringForKey(check, "name") &&
           integerForKey(check, "status_code");
}

Answer putChecks(const Desk& desk, const Call& call) {
    const auto& checks = arrayForKey(call.body, "checks");
    if (checks.empty() || !std::all_of(checks.begin(), checks.end(), isCheck))
        return failure(400, "\"checks\" is not a list of checks.");
    const auto id = std::to_string(desk.store.next("check", 1));
    auto batch = record(id, call);
    batch["checks"] = checks;
    desk.store.put(kind::check, id, batch);
    desk.journal.append("checks", batch);
    return ok({{"results", Json::array()}, {"message", "Received."}});
}

/// Nothing when it is not Base64 of whole groups.
std::optional<std::string> decodeBase64(std::string text) {
    std::erase_if(text, [](char letter) { return letter == '\n' || letter == '\r'; });
    if (text.empty()) return text;
    if (text.size() % 4 != 0) return std::nullopt;
    const auto padding = text.size() - 1 - text.find_last_not_of('=');
    std::string bytes(text.size() / 4 * 3, '\0');
    const int size = EVP_DecodeBlock(reinterpret_cast<unsigned char*>(bytes.data()),
                                     reinterpret_cast<const unsigned char*>(text.data()),
                                     static_cast<int>(text.size()));
    if (size < 0 || padding > 2) return std::nullopt;
    bytes.resize(bytes.size() - padding);
    return bytes;
}

Answer putDump(const Desk& desk, const Call& call) {
    auto data = stringForKey(call.body, "file_data");
    const auto content = data ? decodeBase64(*std::move(data)) : std::nullopt;
    if (!content) return failure(400, "\"file_data\" is not Base64.");
    const auto id = std::to_string(desk.store.next("dump", 1));
    auto dump = record(id, call);
    dump["size"] = content->size();
    dump["sha256"] = sha256Hex(*content);
    desk.store.putBytes("dump/" + id, *content);
    desk.store.put(kind::dump, id, dump);
    desk.journal.append("dump", dump);
    return ok({{"uploaded", true}, {"message", "Received."}});
}

}  // namespace

void addDiagnosticsRoutes(Router& router, Desk& desk) {
    router.add("POST", "/sdk/v1/technology/putChecks", Body::json,
               [&desk](Call& call) { return putChecks(desk, call); });
    router.add("POST", "/sdk/v1/technology/putDump", Body::largeJson,
               [&desk](Call& call) { return putDump(desk, call); });
}

}  // namespace supportsdk::service
