#include "hosts/cli/CommandFields.h"

#include "supportsdk/core/Fields.h"

namespace supportsdk::host {

std::optional<std::vector<std::string>> stringsForKey(const Json& command, const char* key) {
    const auto* list = valueForKey(command, key);
    if (!list || !list->is_array()) return std::nullopt;
    std::vector<std::string> strings;
    for (const auto& item : *list) {
        const auto* text = item.get_ptr<const std::string*>();
        if (!text) return std::nullopt;
        strings.push_back(*text);
    }
    return strings;
}

}  // namespace supportsdk::host
