#include "supportsdk/proactive/files/FileAttributes.h"

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>

#include <cerrno>
#include <vector>

namespace supportsdk {

namespace {

constexpr std::size_t firstBuffer = 1024;
constexpr std::size_t largestBuffer = std::size_t{1024} * 1024;

/// The name that getpwuid_r() or getgrgid_r() knows for `number`; "" for none.
template <typename Record, typename Number>
std::string accountName(int (*lookUp)(Number, Record*, char*, std::size_t, Record**), Number number,
                        char* Record::*name) {
    Record record{};
    Record* found = nullptr;
    std::vector<char> buffer(firstBuffer);
    while (lookUp(number, &record, buffer.data(), buffer.size(), &found) == ERANGE &&
           buffer.size() < largestBuffer)
        buffer.resize(buffer.size() * 4);
    return found && found->*name ? found->*name : "";
}

template <typename Find>
const std::string& remembered(std::map<std::int64_t, std::string>& names, std::int64_t number,
                              const Find& find) {
    const auto known = names.find(number);
    return known != names.end() ? known->second : names.emplace(number, find()).first->second;
}

FileAttributes::Kind kindOf(const struct stat& status) {
    if (S_ISREG(status.st_mode)) return FileAttributes::Kind::plain;
    return S_ISDIR(status.st_mode) ? FileAttributes::Kind::folder : FileAttributes::Kind::other;
}

/// The system counts fractions from the second before, so before 1970 it names the wrong one.
std::int64_t wholeSeconds(const timespec& time) {
    return time.tv_sec < 0 && time.tv_nsec > 0 ? time.tv_sec + 1 : time.tv_sec;
}

}  // namespace

FileAttributes FileAttributesReader::attributesOf(const struct stat& status) {
    const auto owner = status.st_uid;
    const auto groupNumber = status.st_gid;
    FileAttributes attributes;
    attributes.kind = kindOf(status);
    attributes.permissions = status.st_mode;
    attributes.ownerNumber = owner;
    attributes.groupNumber = groupNumber;
    attributes.ownerName = remembered(
        ownerNames_, owner, [&] { return accountName(getpwuid_r, owner, &passwd::pw_name); });
    attributes.groupName = remembered(groupNames_, groupNumber, [&] {
        return accountName(getgrgid_r, groupNumber, &group::gr_name);
    });
    attributes.size = status.st_size < 0 ? 0 : static_cast<std::uintmax_t>(status.st_size);
    attributes.modified = wholeSeconds(status.st_mtim);
    return attributes;
}

std::optional<FileAttributes> FileAttributesReader::read(const std::string& path) {
    // A path with a zero byte would name another file.
    if (path.find('\0') != std::string::npos) return std::nullopt;
    return readAt(AT_FDCWD, path.c_str());
}

std::optional<FileAttributes> FileAttributesReader::readAt(int folder, const char* name) {
    struct stat status {};
    if (fstatat(folder, name, &status, 0) != 0) return std::nullopt;
    return attributesOf(status);
}

std::optional<FileAttributes> FileAttributesReader::readOpen(int descriptor) {
    struct stat status {};
    if (fstat(descriptor, &status) != 0) return std::nullopt;
    return attributesOf(status);
}

}  // namespace supportsdk
