#pragma once

namespace supportsdk::test {

/// While it lives, no file system of this process has locks, as NFS without its lock service. One
/// at a time.
class NoLocks {
 public:
    NoLocks();
    ~NoLocks();
    NoLocks(const NoLocks&) = delete;
    NoLocks& operator=(const NoLocks&) = delete;
};

}  // namespace supportsdk::test
