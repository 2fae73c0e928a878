#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

struct stat;

namespace supportsdk {

/// What an archive keeps of a file beside its content.
struct FileAttributes {
    enum class Kind { plain, folder, other };

    Kind kind = Kind::other;
    /// The POSIX mode bits, type included or not: who writes them masks them.
    std::uint32_t permissions = 0;
    std::int64_t ownerNumber = 0;
    std::int64_t groupNumber = 0;
    /// "" when the system has no name for the number.
    std::string ownerName;
    std::string groupName;
    std::uintmax_t size = 0;
    /// Seconds since 1970, fractions cut off; negative before.
    std::int64_t modified = 0;
};

/// Reads attributes; remembers the names of accounts, whose look-up may cost more than the rest.
/// One thread at a time.
class FileAttributesReader {
 public:
    /// Of what a symbolic link leads to. Nothing when there is no such file.
    [[nodiscard]] std::optional<FileAttributes> read(const std::string& path);
    /// The same of a name in an open folder.
    [[nodiscard]] std::optional<FileAttributes> readAt(int folder, const char* name);
    [[nodiscard]] std::optional<FileAttributes> readOpen(int descriptor);

 private:
    FileAttributes attributesOf(const struct stat& status);

    std::map<std::int64_t, std::string> ownerNames_;
    std::map<std::int64_t, std::string> groupNames_;
};

}  // namespace supportsdk
