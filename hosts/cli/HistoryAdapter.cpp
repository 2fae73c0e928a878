#include "hosts/cli/HistoryAdapter.h"

namespace supportsdk::host {

Json HistoryAdapter::describeRow(std::size_t row) const {
    const auto entry = list().row(row);
    Json fields = {{"label", entry.chatId}};
    const auto put = [&fields](const char* key, const std::string& text) {
        if (!text.empty()) fields[key] = text;
    };
    put("date", entry.date);
    put("status", entry.status);
    put("rating", entry.rating);
    put("detail", entry.latestMessage);
    put("avatar", entry.avatar.value_or(""));
    if (fields.contains("avatar")) fields["avatarShown"] = entry.isAvatarLoaded;
    return fields;
}

}  // namespace supportsdk::host
