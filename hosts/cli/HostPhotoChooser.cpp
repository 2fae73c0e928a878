#include "hosts/cli/HostPhotoChooser.h"

#include "backends/posix/PlainFile.h"

namespace supportsdk::host {

namespace {

constexpr std::uintmax_t longestFile = 64UL << 20;

}  // namespace

void HostPhotoChooser::choose(const PhotoChooserOptions&,
                              std::function<void(std::vector<PhotoItem>)> completion) {
    pick({});
    completion_ = std::move(completion);
    reports_->write("chooser");
}

bool HostPhotoChooser::pick(const std::vector<std::string>& files) {
    auto completion = std::exchange(completion_, nullptr);
    if (!completion) return false;
    std::vector<PhotoItem> items;
    items.reserve(files.size());
    for (const auto& file : files)
        items.push_back({nullptr, [file] { return readPlainFile(file, longestFile); }});
    queue_->post([completion = std::move(completion), items = std::move(items)]() mutable {
        completion(std::move(items));
    });
    return true;
}

}  // namespace supportsdk::host
