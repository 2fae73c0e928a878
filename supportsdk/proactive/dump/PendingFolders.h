#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "supportsdk/proactive/files/TargetFolder.h"

namespace supportsdk {

/// Folders get their own permissions and time once all is there: what comes into them would change
/// the time, and may be kept out by the permissions. There are tars that write a folder's content
/// long after it. One thread at a time.
class PendingFolders {
 public:
    explicit PendingFolders(TargetFolder& target) : target_(target) {}

    /// A folder that was made. Until it is settled, its owner may write in it.
    void add(const std::string& name, std::uint32_t permissions, std::int64_t modified);
    void settleAll();

 private:
    struct Attributes {
        std::uint32_t permissions;
        std::int64_t modified;
    };
    void settle(const std::string& name, const Attributes& attributes);

    TargetFolder& target_;
    std::map<std::string, Attributes> folders_;
    std::size_t bytes_ = 0;
};

}  // namespace supportsdk
