#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "supportsdk/proactive/files/FileHandle.h"

namespace supportsdk {

/// The folder that an archive is extracted into. Names come from the archive, so they are hostile:
/// nothing is written through a symbolic link that lies below the folder, and a name that is
/// absolute, that holds ".." or a zero byte, or that is not to be told from the folder itself is
/// refused. Of "a//b" and "./a/b", which tars do write, "a/b" is taken. That holds also when
/// somebody changes the folder meanwhile: every step goes from an open folder to the next (openat,
/// O_NOFOLLOW). One thread at a time.
///
/// Errors are the system's, and these: a hostile name is std::errc::invalid_argument, the folder
/// itself, and a file with a "/" at its end, std::errc::is_a_directory, anything but a plain file
/// where one is to be std::errc::file_exists, more than maximumLevels names in each other
/// std::errc::filename_too_long.
class TargetFolder {
 public:
    /// Programs that remove folders hold each open on the way down, of 1,024 that they may.
    static constexpr std::size_t maximumLevels = 500;

    /// Creates it with its parents. Nothing, with `error`, when that cannot be done. The path is
    /// the caller's own: symbolic links on the way to it are followed.
    static std::optional<TargetFolder> create(const std::string& path, std::error_code& error);

    TargetFolder(TargetFolder&&) noexcept;
    TargetFolder& operator=(TargetFolder&&) noexcept;
    ~TargetFolder();

    /// Creates the folder with its parents; one that is there is fine.
    bool makeFolder(std::string_view name, std::error_code& error);
    /// Whether makeFolder() created it, on the way to another for one; of the last 65,536 at most.
    [[nodiscard]] bool hasMade(std::string_view name);
    /// What the umask leaves of permissions, as learned when the first file or folder was made;
    /// until then those of the owner.
    [[nodiscard]] std::uint32_t granted(std::uint32_t permissions) const;
    /// A folder that is there, for its attributes. Null with `error`.
    std::shared_ptr<FileHandle> openFolder(std::string_view name, std::error_code& error);
    /// A new file in a folder that is there, in place of a plain file of that name, which another
    /// name of it keeps; open for writing. Null with `error` when it cannot be created, and when
    /// anything but a plain file stands there. `permissions` as open() takes them.
    std::shared_ptr<FileHandle> makeFile(std::string_view name, std::error_code& error,
                                         std::uint32_t permissions = 0666);
    /// Removes what makeFile() made.
    bool removeFile(std::string_view name, std::error_code& error);

 private:
    struct State;
    explicit TargetFolder(std::unique_ptr<State> state);

    std::unique_ptr<State> state_;
};

}  // namespace supportsdk
