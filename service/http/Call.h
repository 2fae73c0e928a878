#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "supportsdk/platform/Values.h"

namespace supportsdk::service {

/// A file part of a multipart form.
struct FilePart {
    std::string fileName;
    std::string contentType;
    std::string content;
};

/// A request, taken apart.
struct Call {
    std::string method;
    /// Percent-decoded, without the query.
    std::string path;
    std::map<std::string, std::string> query;
    /// As received; names in lower case. Of several with one name, the first.
    std::map<std::string, std::string> headers;
    /// The raw body; "" of a multipart form, and once it was read into `body`.
    std::string content;
    std::map<std::string, std::string> fields;
    std::map<std::string, FilePart> files;
    /// Scheme, host and port that the caller used, for addresses in answers.
    std::string base;

    /// What "*" stood for in the route.
    std::string id;
    /// The body of a route that takes a JSON object.
    Json body = Json::object();
    /// The name of the integration that calls, and its record.
    std::string integrationId;
    Json integration = Json::object();

    [[nodiscard]] std::optional<std::string> parameter(const std::string& name) const {
        const auto found = query.find(name);
        return found == query.end() ? std::nullopt : std::optional(found->second);
    }
    /// "" when missing.
    [[nodiscard]] std::string header(const std::string& lowerCaseName) const {
        const auto found = headers.find(lowerCaseName);
        return found == headers.end() ? std::string() : found->second;
    }
};

struct Answer {
    int status = 200;
    std::string content = "{}";
    std::string contentType = "application/json";
    std::map<std::string, std::string> headers = {};
};

/// 200 with a JSON body.
Answer ok(const Json& body);
/// 200 with {"results": [...]}.
Answer results(Json list);
/// A failure with {"message": "..."}.
Answer failure(int status, const std::string& message);
/// 200 with bytes of any type.
Answer bytes(std::string content, std::string contentType);

}  // namespace supportsdk::service
