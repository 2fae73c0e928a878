#include <array>
#include <chrono>
#include <cstdint>

#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/chat/QuorrandChatMessage.h"
#include "supportsdk/core/Ciphers.h"
#include "supportsdk/core/Fields.h"

// What a line becomes outside the list, and the texts that travel inside it.

namespace supportsdk {

namespace {

struct TextField {
    const char* key;
    std::optional<std::string> QuorrandChatMessage::*field;
};

constexpr std::array<TextField, 19> textFields{{
    {"type", &QuorrandChatMessage::type},
    {"id", &QuorrandChatMessage::id},
    {"from", &QuorrandChatMessage::from},
    {"fromName", &QuorrandChatMessage::fromName},
    {"fromMention", &QuorrandChatMessage::fromMention},
    {"fromNickname", &QuorrandChatMessage::fromNickname},
    {"callId", &QuorrandChatMessage::callId},
    {"channel", &QuorrandChatMessage::channel},
    {"service", &QuorrandChatMessage::service},
    {"text", &QuorrandChatMessage::text},
    {"xml", &QuorrandChatMessage::xml},
    {"preview", &QuorrandChatMessage::preview},
    {"url", &QuorrandChatMessage::url},
    {"avatar", &QuorrandChatMessage::avatar},
    {"buttonText", &QuorrandChatMessage::buttonText},
    {"buttonAction", &QuorrandChatMessage::buttonAction},
    {"kb_title", &QuorrandChatMessage::kb_title},
    {"kb_preview", &QuorrandChatMessage::kb_preview},
    {"kb_id", &QuorrandChatMessage::kb_id},
}};

/// Further from 1970 a moment does not fit the clock's type.
constexpr std::int64_t mostMilliseconds = std::int64_t{9'000'000'000'000};

int hexadecimal(char digit) {
    if (digit >= '0' && digit <= '9') return digit - '0';
    if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
    return -1;
}

bool isUtf8(const std::string& text) {
    using Handler = Json::error_handler_t;
    const Json value = text;
    return value.dump(-1, ' ', false, Handler::ignore) ==
           value.dump(-1, ' ', false, Handler::replace);
}

}  // namespace

Json QuorrandChatMessage::dict() const {
    using std::chrono::milliseconds;
    Json dictionary = Json::object();
    for (const auto& [key, field] : textFields) dictionary[key] = (this->*field).value_or("");
    dictionary["date"] =
        date ? Json(std::chrono::floor<milliseconds>(date->time_since_epoch()).count()) : Json("");
    dictionary["buttonActions"] = buttonActions.value_or("");
    dictionary["kb_preview_length"] = kb_preview_length ? Json(*kb_preview_length) : Json("");
    return dictionary;
}

void QuorrandChatMessage::setDict(const Json& dictionary) {
    for (const auto& [key, field] : textFields) this->*field = stringForKey(dictionary, key);
    if (from) from = from->substr(0, from->find(';'));
    date.reset();
    const auto sent = integerForKey(dictionary, "date");
    if (sent && *sent >= -mostMilliseconds && *sent <= mostMilliseconds)
        date = Clock::Time(std::chrono::milliseconds{*sent});
    const auto* actions = valueForKey(dictionary, "buttonActions");
    buttonActions = actions && actions->is_array() ? std::optional(*actions) : std::nullopt;
    kb_preview_length = numberForKey(dictionary, "kb_preview_length");
}

bool QuorrandChatMessage::isFoundInArray(const Json& dictionaries) const {
    const auto chat = chat_.lock();
    if (!chat || !dictionaries.is_array()) return false;
    for (const auto& dictionary : dictionaries) {
        if (createWithDict(*chat, dictionary)->id == id) return true;
    }
    return false;
}

std::string QuorrandChatMessage::createJSONMessage(const std::string& message,
                                                   const std::string& sender,
                                                   const std::string& source) {
    return dumpJson({{"from", sender},
                     {"channel", "chat"},
                     {"secret", MD5("data")},
                     {"context", {{"source", source}}},
                     {"message", message}});
}

std::string QuorrandChatMessage::MD5(std::string_view text) {
    return md5Hex(text.substr(0, text.find('\0')));
}

std::string QuorrandChatMessage::preprocessMessage(const std::string& text) {
    const auto json = parseJson(text);
    return json ? stringForKey(*json, "message").value_or(text) : text;
}

std::optional<std::string> QuorrandChatMessage::URLDecodeString(std::string_view text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            decoded += text[i] == '+' ? ' ' : text[i];
            continue;
        }
        if (i + 2 >= text.size()) return std::nullopt;
        const int high = hexadecimal(text[i + 1]);
        const int low = hexadecimal(text[i + 2]);
        if (high < 0 || low < 0) return std::nullopt;
        decoded += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return isUtf8(decoded) ? std::optional(std::move(decoded)) : std::nullopt;
}

}  // namespace supportsdk
