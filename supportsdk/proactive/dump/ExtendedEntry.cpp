#include "supportsdk/proactive/dump/ExtendedEntry.h"

#include "supportsdk/proactive/tar/PaxRecords.h"

namespace supportsdk {

void ExtendedEntry::setName(std::string_view text) {
    name_ = text.substr(0, text.find('\0'));
}

bool ExtendedEntry::readRecords(std::string_view text) {
    bool isRight = true;
    const bool isWhole = readPaxRecords(text, [&](std::string_view key, std::string_view value) {
        isRight = set(key, value) && isRight;
    });
    return isWhole && isRight;
}

/// An empty value takes back what an earlier record has said.
bool ExtendedEntry::set(std::string_view key, std::string_view value) {
    constexpr std::string_view sparse = "GNU.sparse.";
    isSparse_ = isSparse_ || key.starts_with(sparse);
    const auto number = readPaxSeconds(value);
    const bool isRight = value.empty() || number.has_value();
    if (key == "path") {
        name_ = value.empty() ? std::nullopt : std::optional<std::string>(value);
    } else if (key == "GNU.sparse.name") {
        sparseName_ = value;
    } else if (key == "mtime") {
        modified_ = number;
        return isRight;
    } else if (key == "size") {
        size_ = number ? std::optional<std::uintmax_t>(*number) : std::nullopt;
        return isRight && (!number || *number >= 0);
    }
    return true;
}

void ExtendedEntry::applyTo(TarEntry& entry) const {
    if (name_) entry.name = *name_;
    if (sparseName_) entry.name = *sparseName_;
    if (size_) entry.size = *size_;
    if (modified_) entry.modified = *modified_;
}

}  // namespace supportsdk
