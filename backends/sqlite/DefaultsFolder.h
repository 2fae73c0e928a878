#pragma once

#include <filesystem>
#include <string>

namespace supportsdk {

/// Makes `folder` and what is missing above it, for this user only; nothing happens when it is
/// there.
void makePrivateFolder(const std::filesystem::path& folder);

/// Makes an empty file that only this user reads; nothing happens when it is there.
void makePrivateFile(const std::filesystem::path& file);

/// Waits until the names in `folder`, and its own name, are on the disk.
bool syncFolder(const std::filesystem::path& folder);

/// Renames a database and its companions to "<file>.damaged-<time>"; returns the new name, "" when
/// that could not be done.
[[nodiscard]] std::string setAside(const std::filesystem::path& file);

/// Held by the process that opens, checks or replaces a file, so that two of them never set the
/// same one aside. Lets go of itself when the process ends; after some seconds it is not waited for
/// any longer.
class OpeningLock {
 public:
    explicit OpeningLock(const std::filesystem::path& file);
    ~OpeningLock();
    OpeningLock(const OpeningLock&) = delete;
    OpeningLock& operator=(const OpeningLock&) = delete;

 private:
    int descriptor_;
};

}  // namespace supportsdk
