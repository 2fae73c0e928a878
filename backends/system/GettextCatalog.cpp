#include "backends/system/GettextCatalog.h"

#include <cstring>

#include "backends/posix/PlainFile.h"

namespace supportsdk {

namespace {

constexpr std::uint32_t magic = 0x950412de;
constexpr std::uint32_t swappedMagic = 0xde120495;
constexpr std::size_t tableEntryBytes = 8;

}  // namespace

std::optional<GettextCatalog> GettextCatalog::load(const std::filesystem::path& file) {
    const auto bytes = readPlainFile(file, maximumFileBytes);
    if (!bytes) return std::nullopt;

    GettextCatalog catalog;
    catalog.bytes_ = toText(*bytes);
    const auto mark = catalog.number(0);
    catalog.swapped_ = mark == swappedMagic;
    if (!catalog.swapped_ && mark != magic) return std::nullopt;

    const auto revision = catalog.number(4);
    const auto count = catalog.number(8);
    const auto originals = catalog.number(12);
    const auto translations = catalog.number(16);
    // Minor revisions only add system-dependent strings, which the kit has none of.
    if (!translations || *revision >> 16 > 1) return std::nullopt;
    catalog.count_ = *count;
    catalog.originals_ = *originals;
    catalog.translations_ = *translations;

    const auto header = catalog.find("");
    if (!header || header->find("charset=UTF-8") == std::string_view::npos) return std::nullopt;
    return catalog;
}

std::optional<std::string_view> GettextCatalog::find(std::string_view english) const {
    // Originals are sorted by their bytes.
    std::uint32_t low = 0;
    std::uint32_t high = count_;
    while (low < high) {
        const std::uint32_t middle = low + (high - low) / 2;
        const auto original = text(originals_, middle);
        if (!original) return std::nullopt;
        if (*original == english) {
            const auto translation = text(translations_, middle);
            return translation && !translation->empty() ? translation : std::nullopt;
        }
        if (*original < english) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    return std::nullopt;
}

std::optional<std::uint32_t> GettextCatalog::number(std::size_t offset) const {
    if (bytes_.size() < sizeof(std::uint32_t) || offset > bytes_.size() - sizeof(std::uint32_t))
        return std::nullopt;
    std::uint32_t value = 0;
    std::memcpy(&value, bytes_.data() + offset, sizeof value);
    return swapped_ ? __builtin_bswap32(value) : value;
}

std::optional<std::string_view> GettextCatalog::text(std::uint32_t table,
                                                     std::uint32_t index) const {
    const std::size_t entry = table + std::size_t{index} * tableEntryBytes;
    const auto length = number(entry);
    const auto offset = number(entry + sizeof(std::uint32_t));
    if (!length || !offset || *offset > bytes_.size() || *length > bytes_.size() - *offset)
        return std::nullopt;
    const auto whole = std::string_view(bytes_).substr(*offset, *length);
    return whole.substr(0, whole.find('\0'));
}

}  // namespace supportsdk
