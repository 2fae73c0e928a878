#include <algorithm>
#include <string_view>

#include "service/rest/Desk.h"
#include "supportsdk/core/CaseFolding.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {

using Words = std::vector<std::wstring>;

Words wordsOf(std::string_view text) {
    Words words;
    bool isInWord = false;
    for (const wchar_t character : caseFolded(text)) {
        const bool belongs = isWordCharacter(character);
        if (belongs && !isInWord) words.emplace_back();
        if (belongs) words.back() += character;
        isInWord = belongs;
    }
    return words;
}

/// All of them, in any order, anywhere.
bool mentions(const Json& article, const Words& words) {
    if (integerForKey(article, "type") != 0) return false;
    std::wstring text;
    for (const char* key : {"title", "keywords", "sub_title", "body"})
        text += caseFolded(stringForKey(article, key).value_or("")) + L'\n';
    return std::all_of(words.begin(), words.end(), [&text](const std::wstring& word) {
        return text.find(word) != std::wstring::npos;
    });
}

Answer get(const Desk& desk, const Call& call) {
    const auto id = call.parameter("id");
    if (!id) return results(listOwn(desk, kind::article, call));
    const auto article = findOwn(desk, kind::article, *id, call);
    return article ? results(Json::array({*article})) : failure(404, "This article is unknown.");
}

Answer search(const Desk& desk, const Call& call) {
    const auto words = wordsOf(call.parameter("query").value_or(""));
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
