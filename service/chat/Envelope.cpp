#include "service/chat/Envelope.h"

#include <openssl/evp.h>

#include <array>

#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {
constexpr std::array kindWords{"plain", "attachment",   "extended",   "external_chat",
                               "kb",    "notification", "video_chat", "data"};
}

std::string secretOf(const std::string& kindWord) {
    static constexpr char digits[] = "0123456789abcdef";
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned size = 0;
    EVP_Digest(kindWord.data(), kindWord.size(), digest.data(), &size, EVP_md5(), nullptr);
    std::string text;
    for (unsigned i = 0; i < size; ++i) {
        text += digits[digest[i] >> 4U];
        text += digits[digest[i] & 15U];
    }
    return text;
}

std::optional<std::string> kindWordOf(const Json& envelope) {
    const auto secret = stringForKey(envelope, "secret");
    for (const char* word : kindWords) {
        if (secret == secretOf(word)) return word;
    }
    return std::nullopt;
}

Json makeEnvelope(const std::string& kindWord, const Json& content, const Speaker& speaker) {
    Json context{{"from_name", speaker.name}, {"from_avatar", speaker.avatar}};
    if (kindWord == "video_chat") {
        context["from"] = stringForKey(content, "room").value_or("");
        context["from_user"] = speaker.key;
    } else {
        context["from"] = speaker.key;
    }
    context.update(dictionaryForKey(content, "context"));

    Json envelope{{"secret", secretOf(kindWord)},
                  {"message", stringForKey(content, "message").value_or("")},
                  {"context", std::move(context)}};
    for (const char* key : {"actions", "kb", "attachment"}) {
        if (const auto* value = valueForKey(content, key)) envelope[key] = *value;
    }
    return envelope;
}

std::optional<std::string> readableText(const std::string& body) {
    const auto json = parseJson(body);
    if (!json) return body;
    const auto kindWord = kindWordOf(*json);
    if (!kindWord || kindWord == "data") return std::nullopt;
    auto text = stringForKey(*json, "message").value_or("");
    if (text.empty())
        text = stringForKey(dictionaryForKey(*json, "attachment"), "url").value_or("");
    if (text.empty()) text = stringForKey(dictionaryForKey(*json, "kb"), "title").value_or("");
    return text;
}

std::string avatarPath(const std::string& participantKey) {
    const auto colon = participantKey.find(':');
    const auto kind = participantKey.substr(0, colon);
    const auto id = colon == std::string::npos ? "id" : participantKey.substr(colon + 1);
    return "/api/v1/avatar/" + kind + "/" + id + "/50,50";
}

}  // namespace supportsdk::service
