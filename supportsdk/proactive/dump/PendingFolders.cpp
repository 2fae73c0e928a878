#include "supportsdk/proactive/dump/PendingFolders.h"

namespace supportsdk {

namespace {

constexpr std::uint32_t ownerMayAll = 0700;

void settle(TargetFolder& target, std::string_view name, std::uint32_t permissions,
            std::int64_t modified) {
    // What cannot be had, on a file system without them for one, is not worth a failure.
    std::error_code ignored;
    if (const auto folder = target.openFolder(name, ignored))
        folder->setAttributes(permissions, modified, ignored);
}

}  // namespace

void PendingFolders::enter(std::string_view name, std::uint32_t permissions,
                           std::int64_t modified) {
    while (name.ends_with('/')) name.remove_suffix(1);
    settle(target_, name, permissions | ownerMayAll, modified);
    leaveFor(name);
    name_ = name;
    folders_.push_back({name.size(), permissions, modified});
}

void PendingFolders::leaveFor(std::string_view name) {
    std::size_t around = 0;
    while (around < folders_.size()) {
        const auto length = folders_[around].nameLength;
        const bool isAround = name.size() > length && name[length] == '/' &&
                              name.substr(0, length) == std::string_view(name_).substr(0, length);
        if (!isAround) break;
        around++;
    }
    leaveTo(around);
}

void PendingFolders::leaveTo(std::size_t count) {
    for (; folders_.size() > count; folders_.pop_back()) {
        const auto& folder = folders_.back();
        settle(target_, std::string_view(name_).substr(0, folder.nameLength), folder.permissions,
               folder.modified);
    }
}

}  // namespace supportsdk
