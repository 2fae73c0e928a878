#pragma once

#include <functional>
#include <string>
#include <vector>

#include "service/http/Call.h"

namespace supportsdk::service {

using Handler = std::function<Answer(Call&)>;

/// What has to be there before a handler is asked.
enum class Body {
    none,
    /// A JSON object, else 400.
    json,
    /// The same, and it may be as large as the frontend lets through.
    largeJson,
    /// A multipart form, else 400.
    form,
};

/// Finds the handler of a request. Filled before the first request, read by any thread afterwards.
class Router {
 public:
    /// `pattern` is a path of which one step may be "*". Of several that fit, the first added wins.
    /// A slash at the end makes no difference.
    void add(const std::string& method, const std::string& pattern, Body body, Handler handler);

    /// 404 for an unknown path, 405 for a known one with another method, 400 and 413 for a body
    /// that will not do.
    [[nodiscard]] Answer dispatch(Call& call) const;

 private:
    struct Route {
        std::string method;
        std::vector<std::string> steps;
        Body body;
        Handler handler;
    };
    std::vector<Route> routes_;
};

}  // namespace supportsdk::service
