#pragma once

#include <memory>
#include <string>
#include <system_error>

#include "supportsdk/proactive/files/Descriptor.h"
#include "supportsdk/proactive/files/FileHandle.h"
#include "supportsdk/proactive/files/FileIdentity.h"

namespace supportsdk {

/// A file that appears under its name once it is complete. Until then it grows beside it, under
/// the same name and ".part" (its beginning makes room where that would be too long), and goes with
/// this object. One thread at a time.
class NewFile {
 public:
    /// What a process that was killed has left under that second name is replaced. Null with
    /// `error`: the system's, std::errc::device_or_resource_busy while somebody else is at the same
    /// file, std::errc::is_a_directory, and std::errc::file_exists when what is in the way, under
    /// either name, is no plain file: a device, a pipe, a symbolic link.
    static std::unique_ptr<NewFile> create(const std::string& path, std::error_code& error);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    [[nodiscard]] FileHandle& handle() { return *handle_; }
    /// Whether that is the growing file, or the one in whose place it will come.
    [[nodiscard]] bool is(const FileIdentity& file) const;
    /// Once all is on the disk the file takes its name, in place of a plain file that has it.
    /// False, with `error`, when it did not: as create(), and what sync() and close() tell.
    bool commit(std::error_code& error);

 private:
    NewFile(Descriptor folder, std::string name);
    [[nodiscard]] bool isOurs(int descriptor) const;
    bool isWayFree(std::error_code& error);
    bool open(std::error_code& error);
    bool openHandle(std::error_code& error);
    Descriptor create();
    bool removeLeftover();

    const Descriptor folder_;
    const std::string name_;
    const std::string partName_;
    std::unique_ptr<FileHandle> handle_;
    /// The same open file, and with that its lock, until it has its name.
    Descriptor lock_;
    FileIdentity identity_;
    FileIdentity former_;
};

}  // namespace supportsdk
