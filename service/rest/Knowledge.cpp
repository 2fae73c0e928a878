#include <algorithm>
#include <cctype>

#include "service/rest/Desk.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
}

bool mentions(const Json& article, const std::string& words) {
    if (integerForKey(article, "type") != 0) return false;
    for (const char* key : {"title", "keywords", "sub_title", "body"}) {
        const auto text = lowered(stringForKey(article, key).value_or(""));
        if (text.find(words) != std::string::npos) return true;
    }
    return false;
}

Answer get(const Desk& desk, const Call& call) {
    const auto id = call.parameter("id");
    if (!id) return results(listOwn(desk, kind::article, call));
    const auto article = findOwn(desk, kind::article, *id, call);
    return article ? results(Json::array({*article})) : failure(404, "This article is unknown.");
}

Answer search(const Desk& desk, const Call& call) {
    const auto words = lowered(call.parameter("query").value_or(""));
    auto articles = listOwn(desk, kind::article, call);
    std::erase_if(articles, [&words](const Json& article) {
        return words.empty() || !mentions(article, words);
    });
    return results(std::move(articles));
}

}  // namespace

void addKnowledgeRoutes(Router& router, Desk& desk) {
    router.add("GET", "/sdk/v1/kb/get", Body::none,
               [&desk](Call& call) { return get(desk, call); });
    router.add("GET", "/sdk/v1/kb/search", Body::none,
               [&desk](Call& call) { return search(desk, call); });
}

}  // namespace supportsdk::service
