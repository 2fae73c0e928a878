#include <chrono>
#include <cstdint>

#include "supportsdk/chat/ChatDates.h"
#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/chat/QuorrandChatMessage.h"
#include "supportsdk/core/Ciphers.h"
#include "supportsdk/core/DateFormat.h"
#include "supportsdk/core/Fields.h"

// What a line becomes outside the list, and the texts that travel inside it.

namespace supportsdk {

namespace {

/// Visits the texts that both forms have, under their keys.
template <typename Message, typename Visitor>
void visitSharedTexts(Message& line, const Visitor& visit) {
    visit("id", line.id);
    visit("type", line.type);
    visit("from", line.from);
    visit("fromName", line.fromName);
    visit("fromMention", line.fromMention);
    visit("callId", line.callId);
    visit("channel", line.channel);
    visit("service", line.service);
    visit("text", line.text);
    visit("xml", line.xml);
    visit("preview", line.preview);
    visit("url", line.url);
    visit("avatar", line.avatar);
    visit("buttonText", line.buttonText);
    visit("buttonAction", line.buttonAction);
}

template <typename Message, typename Visitor>
void visitTexts(Message& line, const Visitor& visit) {
    visitSharedTexts(line, visit);
    visit("fromNickname", line.fromNickname);
    visit("kb_title", line.kb_title);
    visit("kb_preview", line.kb_preview);
    visit("kb_id", line.kb_id);
}

/// Further from 1970 a moment does not fit the clock's type.
constexpr std::int64_t mostMilliseconds = std::int64_t{9'000'000'000'000};

int hexadecimal(char digit) {
    if (digit >= '0' && digit <= '9') return digit - '0';
    if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
    return -1;
}

std::int64_t millisecondsOf(Clock::Time date) {
    return std::chrono::floor<std::chrono::milliseconds>(date.time_since_epoch()).count();
}

std::optional<Clock::Time> readDate(const Json& dictionary) {
    const auto sent = integerForKey(dictionary, "date");
    if (!sent || *sent < -mostMilliseconds || *sent > mostMilliseconds) return std::nullopt;
    return Clock::Time(std::chrono::milliseconds{*sent});
}

std::optional<Json> storedActions(const Json& dictionary) {
    const auto* actions = valueForKey(dictionary, "buttonActions");
    if (!actions || !actions->is_array()) return std::nullopt;
    auto stored = Json::array();
    for (const auto& action : *actions) {
        if (stored.size() == QuorrandChatMessage::maximumActions) break;
        stored.push_back(action);
    }
    return stored;
}

}  // namespace

Json QuorrandChatMessage::dict() const {
    Json dictionary = Json::object();
    visitTexts(*this, [&dictionary](const char* key, const auto& field) {
        dictionary[key] = field ? *field : "";
    });
    dictionary["date"] = date ? Json(millisecondsOf(*date)) : Json("");
    dictionary["buttonActions"] = buttonActions.value_or("");
    dictionary["kb_preview_length"] = kb_preview_length ? Json(*kb_preview_length) : Json("");
    return dictionary;
}

void QuorrandChatMessage::setDict(const Json& dictionary) {
    visitTexts(*this, [&dictionary](const char* key, auto& field) {
        field = stringForKey(dictionary, key);
    });
    if (from) from = from->substr(0, from->find(';'));
    date = readDate(dictionary);
    buttonActions = storedActions(dictionary);
    kb_preview_length = numberForKey(dictionary, "kb_preview_length");
}

Json QuorrandChatMessage::archive() const {
    Json archive = Json::object();
    const auto put = [&archive](const char* key, const auto& field) {
        if (field) archive[key] = *field;
    };
    visitSharedTexts(*this, put);
    // Archives of hosts have always had it under a key that nobody reads.
    put("fromnickname", fromNickname);
    put("buttonActions", buttonActions);
    if (date) archive["date"] = millisecondsOf(*date);
    return archive;
}

std::shared_ptr<QuorrandChatMessage> QuorrandChatMessage::createWithArchive(QuorrandChat& chat,
                                                                            const Json& archive) {
    auto line = create(chat);
    const auto read = [&archive](const char* key, auto& field) {
        field = stringForKey(archive, key);
    };
    visitSharedTexts(*line, read);
    read("fromNickname", line->fromNickname);
    line->buttonActions = storedActions(archive);
    line->date = readDate(archive);
    return line;
}

void QuorrandChatMessage::clear() {
    visitTexts(*this, [](const char*, auto& field) { field.reset(); });
    html.reset();
    date.reset();
    buttonActions.reset();
    kb_preview_length.reset();
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

std::optional<std::string> QuorrandChatMessage::stringFromDict(const Json& dictionary,
                                                               std::string_view key) {
    return stringForKey(dictionary, key);
}

std::optional<double> QuorrandChatMessage::numberFromDict(const Json& dictionary,
                                                          std::string_view key) {
    return numberForKey(dictionary, key);
}

std::optional<std::string> QuorrandChatMessage::fullDateString() const {
    return dateWithFormat("yyyy-MM-dd'T'HH:mm:ss.SSS'Z'");
}

std::optional<std::string> QuorrandChatMessage::dateString() const {
    return dateWithFormat(platform_->localizer->localized("M/d/yy"));
}

std::optional<std::string> QuorrandChatMessage::timeString() const {
    return dateWithFormat(platform_->localizer->localized("h:mm a"));
}

std::optional<std::string> QuorrandChatMessage::dateWithFormat(const std::string& format) const {
    return date ? std::optional(formattedDate(*platform_->clock, *date, format)) : std::nullopt;
}

std::optional<Clock::Time> QuorrandChatMessage::getDateFromFullDateString(
    const std::string& dateText) const {
    return dateFromFullDateString(*platform_->clock, dateText);
}

std::string QuorrandChatMessage::MD5(std::string_view text) {
    return md5Hex(text.substr(0, text.find('\0')));
}

std::optional<std::string> QuorrandChatMessage::preprocessMessage(const std::string& text) {
    const auto json = parseJson(text);
    return json && json->is_object() ? stringForKey(*json, "message") : text;
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
