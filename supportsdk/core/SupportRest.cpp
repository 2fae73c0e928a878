#include <strings.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "supportsdk/core/Ciphers.h"
#include "supportsdk/core/Configuration.h"
#include "supportsdk/core/FormParameters.h"
#include "supportsdk/core/MultipartForm.h"
#include "supportsdk/core/RestResponse.h"
#include "supportsdk/core/Support.h"

namespace supportsdk {

namespace {

constexpr const char* tokenHeader = "X-Quorrand-DownloadSessionToken";

/// Field names are case-insensitive (RFC 9110, section 5.1).
std::optional<std::string> headerField(const HttpHeaders& headers, const std::string& name) {
    const auto found = std::find_if(headers.begin(), headers.end(), [&name](const auto& header) {
        return strcasecmp(header.first.c_str(), name.c_str()) == 0;
    });
    return found == headers.end() ? std::nullopt : std::optional(found->second);
}

/// Path values go in as they are; an address that they spoil fails in the client.
std::string fullAddress(const Configuration& config, const std::string& endpoint,
                        const std::string& uri) {
    return config.host().value_or("") + endpoint + uri;
}

RestCallback choose(bool isMissingFine, RestCallback success, RestCallback failure) {
    return [isMissingFine, success = std::move(success),
            failure = std::move(failure)](const Json& response) {
        if (!response.is_object()) return;
        const auto status = numberForKey(response, "status");
        const auto& chosen = status.value_or(isMissingFine ? 200 : 0) == 200 ? success : failure;
        if (chosen) chosen(response);
    };
}

}  // namespace

void Support::executeGet(const std::string& uri, const std::optional<std::string>& path,
                         const Json& parameters, RestCallback completion) {
    auto address = path ? fullAddress(*config, *path, uri) : uri;
    if (const auto query = queryString(parameters); !query.empty()) {
        address += (address.find('?') == std::string::npos ? '?' : '&') + query;
    }
    execute(getManagerWithUri(address), std::move(completion));
}

void Support::executePost(const std::string& uri, const std::string& path, const Json& parameters,
                          RestCallback completion) {
    if (parameters.is_null()) {
        post(uri, path, "", {}, std::move(completion));
    } else {
        post(uri, path, "application/json", toBytes(dumpJson(parameters)), std::move(completion));
    }
}

void Support::executePost(const std::string& uri, const std::string& path,
                          std::span<const std::byte> data, const Json& parameters,
                          RestCallback completion) {
    MultipartForm form;
    for (const auto& [name, value] : formParameters(parameters)) {
        form.addField(name, value.value_or(""));
    }
    // The service takes whatever comes under this name and type, and looks at the data itself.
    form.addFile("file-data", "image", "image/jpeg", data);
    auto encoded = form.encode();
    post(uri, path, encoded.contentType, std::move(encoded.body), std::move(completion));
}

void Support::post(const std::string& uri, const std::string& path, const std::string& contentType,
                   Bytes body, RestCallback completion) {
    auto request = getManagerWithUri(fullAddress(*config, path, uri));
    request.method = "POST";
    if (!contentType.empty()) request.headers.emplace_back("Content-Type", contentType);
    request.body = std::move(body);
    execute(std::move(request), std::move(completion));
}

HttpRequest Support::getManagerWithUri(const std::string& uri) {
    HttpRequest request;
    request.url = uri;
    request.headers = getHeaders();
    request.headers.emplace_back("Accept", "application/json");
    request.confinedHeaderPrefix = "X-Quorrand-";
    request.maximumResponseBytes = maximumResponseBytes;
    return request;
}

void Support::execute(HttpRequest request, RestCallback completion) {
    const auto started = platform->clock->now();
    auto address = request.url;
    platform->http->send(std::move(request),
                         [weak = weak_from_this(), started, address = std::move(address),
                          completion = std::move(completion)](const HttpResponse& response) {
                             const auto result = readResponse(response);
                             if (const auto self = weak.lock()) {
                                 self->elapsedTimeSince(started, address, result.isSuccess);
                                 if (result.isSuccess) self->processHeadersForOperation(response);
                             }
                             if (completion) completion(result.dictionary);
                         });
}

HttpHeaders Support::getHeaders() {
    headers = config->getHeaders();
    headers.emplace_back("X-Quorrand-User-Agent", clientAppIdentifier());
    if (downloadSessionToken) headers.emplace_back(tokenHeader, *downloadSessionToken);
    shareHeadersWithChat();
    return headers;
}

HttpHeaders Support::processHeadersForOperation(const HttpResponse& response) {
    downloadSessionToken = headerField(response.headers, tokenHeader);
    return response.headers;
}

HttpHeaders Support::getServerFailureResponseForOperation(const HttpResponse& response) {
    return response.headers;
}

std::string Support::getServerFailureMessageForOperation(const HttpResponse& response) {
    return headerField(response.headers, "message").value_or("");
}

void Support::elapsedTimeSince(Clock::Time date, const std::string& event, bool success) const {
    const std::chrono::duration<double> elapsed = platform->clock->now() - date;
    platform->log->write(event + (success ? " Success" : " Failure") + " Elapsed " +
                         std::to_string(elapsed.count()) + " seconds");
}

RestCallback Support::strictly(RestCallback success, RestCallback failure) {
    return choose(false, std::move(success), std::move(failure));
}

RestCallback Support::leniently(RestCallback success, RestCallback failure) {
    return choose(true, std::move(success), std::move(failure));
}

std::string Support::hmacSha256(std::string_view text, std::string_view salt) {
    return base64Encode(supportsdk::hmacSha256(text, salt));
}

std::string Support::encodeString(std::string_view text) const {
    return hmacSha256(text, config->configPrivateKey.value_or(""));
}

std::string Support::iso8601Date() const {
    const auto parts = platform->clock->local(platform->clock->now());
    std::array<char, 32> date{};
    std::strftime(date.data(), date.size(), "%Y-%m-%dT%H:%M:%S", &parts);
    const long minutes = parts.tm_gmtoff / 60;
    if (minutes == 0) return std::string(date.data()) + "Z";
    std::array<char, 16> zone{};
    std::snprintf(zone.data(), zone.size(), "%c%02ld:%02ld", minutes < 0 ? '-' : '+',
                  std::labs(minutes) / 60 % 100, std::labs(minutes) % 60);
    return std::string(date.data()) + zone.data();
}

}  // namespace supportsdk
