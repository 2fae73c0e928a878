#include "supportsdk/proactive/dump/PendingFolders.h"

namespace supportsdk {

namespace {

constexpr std::uint32_t ownerMayAll = 0700;
/// Beyond this, for an archive of folders without end, those that wait are settled early.
constexpr std::size_t maximumBytes = std::size_t{4} * 1024 * 1024;
constexpr std::size_t bytesBesideName = 128;

}  // namespace

void PendingFolders::add(const std::string& name, std::uint32_t permissions,
                         std::int64_t modified) {
    settle(name, {permissions | ownerMayAll, modified});
    bytes_ += name.size() + bytesBesideName;
    if (bytes_ > maximumBytes) settleAll();
    folders_[name] = {permissions, modified};
}

void PendingFolders::settleAll() {
    // Inner ones first: the outer ones may shut them off.
    for (auto folder = folders_.rbegin(); folder != folders_.rend(); ++folder)
        settle(folder->first, folder->second);
    folders_.clear();
    bytes_ = 0;
}

void PendingFolders::settle(const std::string& name, const Attributes& attributes) {
    // What cannot be had, on a file system without them for one, is not worth a failure.
    std::error_code ignored;
    if (const auto folder = target_.openFolder(name, ignored))
        folder->setAttributes(attributes.permissions, attributes.modified, ignored);
}

}  // namespace supportsdk
