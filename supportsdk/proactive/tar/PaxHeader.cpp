#include "supportsdk/proactive/tar/PaxHeader.h"

#include <algorithm>
#include <string>

#include "supportsdk/proactive/tar/PaxRecords.h"
#include "supportsdk/proactive/tar/TarHeader.h"

namespace supportsdk {

namespace {

constexpr std::int64_t sevenDigits = 07777777;
constexpr std::int64_t elevenDigits = 077777777777;
/// Where readers that do not know the extended header would put it as a file.
constexpr std::string_view paxFolder = "PaxHeaders/";
constexpr std::uint32_t everybodyReads = 0644;

/// A path of the same length, so that readers that do not know extended headers get one too.
std::string asciiOf(std::string_view path) {
    std::string text(path);
    std::ranges::replace_if(
        text, [](char letter) { return (letter & 0x80) != 0; }, '_');
    return text;
}

/// Names of accounts end with a zero byte in their field.
bool fitsAccount(const std::string& name) {
    return isAscii(name) && name.size() < tarField::userName.length;
}

bool fitsName(std::string_view path) {
    const auto name = isAscii(path) ? splitTarName(path) : std::nullopt;
    return name && !name->name.empty();
}

bool fitsTime(std::int64_t seconds) {
    return seconds >= 0 && seconds <= elevenDigits;
}

/// What the plain header cannot hold.
class Records {
 public:
    void add(std::string_view key, std::string_view value, bool fits) {
        if (fits) return;
        text_ += paxRecord(key, value);
        isBinary_ = isBinary_ || !isAscii(value);
    }
    void add(std::string_view key, std::int64_t value, bool fits) {
        if (!fits) add(key, std::to_string(value), false);
    }
    /// Texts count as UTF-8 unless the first record says otherwise, and bsdtar composes those: two
    /// names of one sight would become one file.
    [[nodiscard]] std::string text() const {
        return (isBinary_ ? paxRecord("hdrcharset", "BINARY") : "") + text_;
    }

 private:
    std::string text_;
    bool isBinary_ = false;
};

std::string recordsOf(std::string_view path, const FileAttributes& attributes, char type) {
    const auto size = static_cast<std::int64_t>(attributes.size);
    Records records;
    records.add("path", path, fitsName(path));
    records.add("size", size, type == tarType::folder || size <= elevenDigits);
    records.add("mtime", attributes.modified, fitsTime(attributes.modified));
    records.add("uid", attributes.ownerNumber, attributes.ownerNumber <= sevenDigits);
    records.add("gid", attributes.groupNumber, attributes.groupNumber <= sevenDigits);
    records.add("uname", attributes.ownerName, fitsAccount(attributes.ownerName));
    records.add("gname", attributes.groupName, fitsAccount(attributes.groupName));
    return records.text();
}

TarBlock headerOfRecords(const std::string& path, const FileAttributes& entry, std::size_t length) {
    FileAttributes attributes;
    attributes.permissions = everybodyReads;
    attributes.size = length;
    attributes.modified = entry.modified;
    const auto name = std::string_view(path).substr(0, tarField::name.length - paxFolder.size());
    return makeTarHeader({"", std::string(paxFolder).append(name)}, attributes, tarType::pax);
}

}  // namespace

std::vector<std::byte> makePaxHeader(std::string_view path, const FileAttributes& attributes,
                                     char type) {
    const auto records = recordsOf(path, attributes, type);
    const auto ascii = asciiOf(path);
    auto plain = attributes;
    plain.modified = std::clamp(plain.modified, std::int64_t{0}, elevenDigits);

    std::vector<std::byte> blocks;
    const auto append = [&](const auto& bytes) {
        const auto all = std::as_bytes(std::span(bytes));
        blocks.insert(blocks.end(), all.begin(), all.end());
        blocks.resize((blocks.size() + tarBlockBytes - 1) / tarBlockBytes * tarBlockBytes);
    };
    if (!records.empty()) {
        append(headerOfRecords(ascii, plain, records.size()));
        append(records);
    }
    append(makeTarHeader(fitTarName(ascii), plain, type));
    return blocks;
}

}  // namespace supportsdk
