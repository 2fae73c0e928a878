#include "supportsdk/chat/ChatHistoryStore.h"

#include <utility>

#include "supportsdk/core/Fields.h"

namespace supportsdk {

namespace {

constexpr const char* historyKey = "QuorrandChatHistory";

}  // namespace

void ChatHistoryStore::addEntry(UserDefaults& defaults, const std::string& conversation,
                                Json line) {
    if (!history_) history_ = Json::object();
    auto& lines = (*history_)[conversation];
    if (!lines.is_array()) lines = Json::array();
    lines.push_back(std::move(line));
    write(defaults);
}

std::optional<Json> ChatHistoryStore::load(UserDefaults& defaults,
                                           const std::string& conversation) {
    if (history_) {
        history_ = defaults.dictionary(historyKey).value_or(Json::object());
    } else {
        history_ = Json::object();
        write(defaults);
    }
    const auto* lines = valueForKey(*history_, conversation);
    return lines && lines->is_array() ? std::optional(*lines) : std::nullopt;
}

void ChatHistoryStore::write(UserDefaults& defaults) const {
    defaults.setValue(historyKey, *history_);
    defaults.flush();
}

}  // namespace supportsdk
