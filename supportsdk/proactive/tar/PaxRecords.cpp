#include "supportsdk/proactive/tar/PaxRecords.h"

#include <charconv>
#include <cstddef>

namespace supportsdk {

std::string paxRecord(std::string_view key, std::string_view value) {
    const auto rest = key.size() + value.size() + std::string_view(" =\n").size();
    // The length grows by its own digits, which may make it one digit longer.
    auto length = rest + std::to_string(rest).size();
    length = rest + std::to_string(length).size();
    std::string record = std::to_string(length);
    record.reserve(length);
    return record.append(" ").append(key).append("=").append(value).append("\n");
}

bool readPaxRecords(std::string_view text,
                    const std::function<void(std::string_view, std::string_view)>& record) {
    while (!text.empty() && text.front() != '\0') {
        std::size_t length = 0;
        const auto* const end = text.data() + text.size();
        const auto [rest, fault] = std::from_chars(text.data(), end, length);
        if (fault != std::errc() || rest == end || *rest != ' ' || length > text.size())
            return false;
        const auto start = static_cast<std::size_t>(rest - text.data()) + 1;
        if (length <= start || text[length - 1] != '\n') return false;
        const auto body = text.substr(start, length - 1 - start);
        const auto equals = body.find('=');
        if (equals == std::string_view::npos) return false;
        record(body.substr(0, equals), body.substr(equals + 1));
        text.remove_prefix(length);
    }
    return true;
}

}  // namespace supportsdk
