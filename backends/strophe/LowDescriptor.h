#pragma once

#include <mutex>

namespace supportsdk {

/// Keeps one descriptor below the limit of select(), which libstrophe waits with, for the next
/// socket of the kit: in a host with many open files none may be left when it is needed. Any
/// thread.
class LowDescriptor {
 public:
    /// Descriptors have to be smaller than this (FD_SETSIZE).
    static constexpr int limit = 1024;

    LowDescriptor() = default;
    ~LowDescriptor();
    LowDescriptor(const LowDescriptor&) = delete;
    LowDescriptor& operator=(const LowDescriptor&) = delete;

    /// Takes one where none is held and one is to be had.
    void reserve();

    /// Gives the held one back, so that the next socket finds it; false when a socket opened now
    /// would lie beyond the limit.
    bool release();

 private:
    std::mutex mutex_;
    int held_ = -1;
};

}  // namespace supportsdk
