#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <tuple>

namespace supportsdk {

/// Tells two names of one file from two files.
struct FileIdentity {
    std::uintmax_t device = 0;
    std::uintmax_t inode = 0;

    static FileIdentity of(const struct stat& status) { return {status.st_dev, status.st_ino}; }
    /// Of nothing, when the descriptor is not open.
    static FileIdentity of(int descriptor) {
        struct stat status {};
        return fstat(descriptor, &status) == 0 ? of(status) : FileIdentity{};
    }
    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
    friend bool operator<(const FileIdentity& left, const FileIdentity& right) {
        return std::tie(left.device, left.inode) < std::tie(right.device, right.inode);
    }
};

}  // namespace supportsdk
