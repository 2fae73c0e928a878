#include "hosts/cli/HostPhotoChooser.h"

#include <filesystem>
#include <fstream>

namespace supportsdk::host {

namespace {

constexpr std::uintmax_t longestFile = 64UL << 20;

std::optional<Bytes> readFile(const std::filesystem::path& file) {
    std::error_code error;
    // A pipe or a device could keep the thread for ever.
    if (!std::filesystem::is_regular_file(file, error)) return std::nullopt;
    const auto size = std::filesystem::file_size(file, error);
    if (error || size > longestFile) return std::nullopt;
    Bytes bytes(size);
    std::ifstream in(file, std::ios::binary);
    in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size));
    return in ? std::optional(std::move(bytes)) : std::nullopt;
}

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
    for (const auto& file : files) items.push_back({nullptr, [file] { return readFile(file); }});
    queue_->post([completion = std::move(completion), items = std::move(items)]() mutable {
        completion(std::move(items));
    });
    return true;
}

}  // namespace supportsdk::host
