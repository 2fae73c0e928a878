#include "backends/system/DirectoryBundle.h"

#include <algorithm>

#include "backends/posix/PlainFile.h"

namespace supportsdk {

namespace fs = std::filesystem;

namespace {

/// Whether `inner` lies below `outer`; both without symbolic links.
bool isInside(const fs::path& inner, const fs::path& outer) {
    const auto [end, rest] = std::mismatch(outer.begin(), outer.end(), inner.begin(), inner.end());
    return end == outer.end() && rest != inner.end();
}

}  // namespace

std::optional<std::string> DirectoryBundle::info(const std::string& key) const {
    if (!info_) {
        const auto file = data("Info", "json");
        info_ = file ? Json::parse(toText(*file), nullptr, false) : Json();
    }
    if (!info_->is_object()) return std::nullopt;
    const auto found = info_->find(key);
    if (found == info_->end() || !found->is_string()) return std::nullopt;
    return found->get<std::string>();
}

std::optional<fs::path> DirectoryBundle::path(const std::string& name,
                                              const std::string& type) const {
    const std::string file = type.empty() ? name : name + "." + type;
    // A zero byte would end the name for the system only: what was checked would not be what opens.
    if (folder_.empty() || file.find('\0') != std::string::npos) return std::nullopt;
    const fs::path relative(file);
    if (relative.is_absolute() ||
        std::find(relative.begin(), relative.end(), "..") != relative.end())
        return std::nullopt;

    std::error_code error;
    const auto root = fs::canonical(folder_, error);
    if (error) return std::nullopt;
    const auto target = fs::canonical(root / relative, error);
    if (error || !isInside(target, root)) return std::nullopt;
    // Not a folder, and not a pipe or a device that would block its reader.
    if (!fs::is_regular_file(target, error)) return std::nullopt;
    return target;
}

std::optional<Bytes> DirectoryBundle::data(const std::string& name, const std::string& type) const {
    const auto file = path(name, type);
    return file ? readPlainFile(*file, maximumFileBytes) : std::nullopt;
}

}  // namespace supportsdk
