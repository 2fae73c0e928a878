#include "supportsdk/core/RestResponse.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace supportsdk {

namespace {

bool isAccepted(int status) {
    return status >= 200 && status <= 299;
}

std::optional<Json> decode(const HttpResponse& response) {
    if (response.status == 204 && response.body.empty()) return Json::object();
    if (response.body.size() > maximumResponseBytes) return std::nullopt;
    auto body = parseJson(toText(response.body));
    return body && body->is_object() ? std::move(body) : std::nullopt;
}

/// Marks a failure under a status that means success, which would else look like an answer that
/// says nothing.
constexpr const char* unreadableKey = "com.goquorrand.supportsdk.unreadable";

std::string describeFailure(const HttpResponse& response) {
    if (!response.error.empty()) return response.error;
    if (response.status == 0) return "The request failed.";
    if (isAccepted(response.status)) return "The response could not be read.";
    return "Request failed: " + statusText(response.status) + " (" +
           std::to_string(response.status) + ")";
}

Json failureDictionary(const HttpResponse& response) {
    Json dictionary = Json::object();
    if (response.status != 0) {
        for (const auto& [name, value] : response.headers) dictionary[name] = value;
    }
    dictionary["status"] = response.status;
    dictionary["message"] = describeFailure(response);
    if (isAccepted(response.status)) dictionary[unreadableKey] = true;
    // Header values may be any bytes; what travels on as JSON is UTF-8.
    return parseJson(dumpJson(dictionary)).value_or(Json::object());
}

}  // namespace

bool isUnreadable(const Json& response) {
    return boolForKey(response, unreadableKey);
}

RestResponse readResponse(const HttpResponse& response) {
    if (response.error.empty() && isAccepted(response.status)) {
        if (auto body = decode(response)) {
            (*body)["status"] = response.status;
            // The mark is the kit's alone.
            body->erase(unreadableKey);
            return {true, *std::move(body)};
        }
    }
    return {false, failureDictionary(response)};
}

std::string statusText(int status) {
    using Entry = std::pair<int, const char*>;
    static constexpr std::array<Entry, 22> texts{{
        {300, "multiple choices"},
        {301, "moved permanently"},
        {302, "found"},
        {303, "see other"},
        {304, "not modified"},
        {307, "temporarily redirected"},
        {308, "permanently redirected"},
        {400, "bad request"},
        {401, "unauthorized"},
        {403, "forbidden"},
        {404, "not found"},
        {405, "method not allowed"},
        {408, "request timed out"},
        {409, "conflict"},
        {410, "no longer exists"},
        {413, "request too large"},
        {429, "too many requests"},
        {500, "internal server error"},
        {501, "not implemented"},
        {502, "bad gateway"},
        {503, "service unavailable"},
        {504, "gateway timed out"},
    }};
    const auto* const found = std::find_if(
        texts.begin(), texts.end(), [status](const Entry& entry) { return entry.first == status; });
    if (found != texts.end()) return found->second;
    if (status >= 500 && status <= 599) return "server error";
    if (status >= 400 && status <= 499) return "client error";
    return "unexpected status";
}

}  // namespace supportsdk
