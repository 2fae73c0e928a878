#pragma once

#include <sys/resource.h>

namespace supportsdk::test {

/// No more of a resource, as if the disk were full (RLIMIT_FSIZE) or too many files open.
class ResourceLimit {
 public:
    ResourceLimit(__rlimit_resource resource, rlim_t most) : resource_(resource) {
        getrlimit(resource_, &before_);
        const rlimit now{most, before_.rlim_max};
        setrlimit(resource_, &now);
    }
    ResourceLimit(const ResourceLimit&) = delete;
    ResourceLimit& operator=(const ResourceLimit&) = delete;
    ~ResourceLimit() { setrlimit(resource_, &before_); }

 private:
    const __rlimit_resource resource_;
    rlimit before_{};
};

}  // namespace supportsdk::test
