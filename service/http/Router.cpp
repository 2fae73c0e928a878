#include "service/http/Router.h"

#include <algorithm>

#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {

/// Small pieces of JSON take many times their size in memory; nothing but a dump comes near this.
constexpr std::size_t maximumJsonSize = 24U << 20U;

std::vector<std::string> stepsOf(const std::string& path) {
    std::vector<std::string> steps;
    std::size_t begin = 1;
    while (begin < path.size()) {
        const auto end = std::min(path.find('/', begin), path.size());
        steps.push_back(path.substr(begin, end - begin));
        begin = end + 1;
    }
    return steps;
}

std::optional<std::string> wildcardOf(const std::vector<std::string>& pattern,
                                      const std::vector<std::string>& steps) {
    if (pattern.size() != steps.size()) return std::nullopt;
    std::string wildcard;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if (pattern[i] == "*" && !steps[i].empty()) {
            wildcard = steps[i];
        } else if (pattern[i] != steps[i]) {
            return std::nullopt;
        }
    }
    return wildcard;
}

std::optional<Answer> objectionTo(Call& call, Body body) {
    if (body == Body::form && call.fields.empty() && call.files.empty())
        return failure(400, "A multipart form is expected.");
    if (body != Body::json && body != Body::largeJson) return std::nullopt;
    if (body == Body::json && call.content.size() > maximumJsonSize)
        return failure(413, "The body is too large.");
    auto parsed = parseJson(call.content);
    if (!parsed || !parsed->is_object()) return failure(400, "The body is not a JSON object.");
    call.body = std::move(*parsed);
    std::string().swap(call.content);
    return std::nullopt;
}

}  // namespace

void Router::add(const std::string& method, const std::string& pattern, Body body,
                 Handler handler) {
    routes_.push_back({method, stepsOf(pattern), body, std::move(handler)});
}

Answer Router::dispatch(Call& call) const {
    const auto steps = stepsOf(call.path);
    bool pathIsKnown = false;
    for (const auto& route : routes_) {
        const auto wildcard = wildcardOf(route.steps, steps);
        if (!wildcard) continue;
        pathIsKnown = true;
        if (route.method != call.method) continue;
        call.id = *wildcard;
        if (auto objection = objectionTo(call, route.body)) return *objection;
        return route.handler(call);
    }
    return pathIsKnown ? failure(405, "This method is not offered here.")
                       : failure(404, "There is nothing here.");
}

}  // namespace supportsdk::service
