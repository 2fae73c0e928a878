#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "supportsdk/proactive/files/TargetFolder.h"

namespace supportsdk {

/// Folders get their own permissions and time once what lies in them is there: both would stand in
/// its way or be changed by it. So those wait which lie around each other. One thread at a time.
class PendingFolders {
 public:
    explicit PendingFolders(TargetFolder& target) : target_(target) {}

    /// A folder that was made. Until it is left, its owner may write in it.
    void enter(std::string_view name, std::uint32_t permissions, std::int64_t modified);
    /// Settles those in which `name` does not lie.
    void leaveFor(std::string_view name);
    void leaveAll() { leaveTo(0); }

 private:
    struct Folder {
        std::size_t nameLength;
        std::uint32_t permissions;
        std::int64_t modified;
    };
    void leaveTo(std::size_t count);

    TargetFolder& target_;
    /// Of the innermost; the names of the others are its beginning.
    std::string name_;
    std::vector<Folder> folders_;
};

}  // namespace supportsdk
