#include "supportsdk/proactive/files/TargetFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <vector>

#include "supportsdk/proactive/files/Descriptor.h"

namespace supportsdk {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
constexpr mode_t everybody = 0777;
/// Programs that remove folders hold each open on the way down, of 1,024 that they may.
constexpr std::size_t maximumLevels = 500;

std::error_code latestError() {
    return {errno, std::generic_category()};
}

/// The name without what means nothing in it; nothing, with `error`, when it is refused.
std::optional<std::string> cleaned(std::string_view name, std::error_code& error) {
    error = std::make_error_code(std::errc::invalid_argument);
    if (name.starts_with('/') || name.find('\0') != std::string_view::npos) return std::nullopt;
    std::string clean;
    std::size_t levels = 0;
    while (!name.empty()) {
        const auto end = std::min(name.find('/'), name.size());
        const auto part = name.substr(0, end);
        if (part == "..") return std::nullopt;
        if (!part.empty() && part != ".") {
            clean.append(clean.empty() ? "" : "/").append(part);
            levels++;
        }
        name.remove_prefix(std::min(end + 1, name.size()));
    }
    error.clear();
    if (clean.empty()) error = std::make_error_code(std::errc::is_a_directory);
    if (levels > maximumLevels) error = std::make_error_code(std::errc::filename_too_long);
    return error ? std::nullopt : std::optional(clean);
}

struct Place {
    std::string parent;
    std::string name;
};

std::optional<Place> placeOf(std::string_view name, std::error_code& error) {
    auto clean = cleaned(name, error);
    if (!clean) return std::nullopt;
    const auto slash = clean->rfind('/');
    if (slash == std::string::npos) return Place{"", std::move(*clean)};
    return Place{clean->substr(0, slash), clean->substr(slash + 1)};
}

bool isPlainFile(int parent, const std::string& name) {
    struct stat status {};
    return fstatat(parent, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISREG(status.st_mode);
}

Descriptor createFile(int parent, const std::string& name, std::uint32_t permissions) {
    return Descriptor(openat(parent, name.c_str(),
                             O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, permissions));
}

}  // namespace

struct TargetFolder::State {
    /// The open folder of that clean path, created on the way when that is wished; -1 with `error`.
    /// It stays open for the next, which most often lies in the same or below.
    int enter(const std::string& path, bool creates, std::error_code& error) {
        std::size_t start = 0;
        if (!latest || !isBelowLatest(path)) {
            latest.reset();
            latestPath.clear();
        } else {
            start = latestPath.size() + (latestPath.empty() ? 0 : 1);
        }
        while (start < path.size()) {
            const auto end = std::min(path.find('/', start), path.size());
            if (!step(path.substr(start, end - start), creates)) {
                error = latestError();
                return -1;
            }
            // Piece by piece: a hostile path has half a million of them.
            if (!latestPath.empty()) latestPath += '/';
            latestPath.append(path, start, end - start);
            start = end + 1;
        }
        error.clear();
        return current();
    }

    Descriptor root;

 private:
    [[nodiscard]] int current() const { return latest ? latest.get() : root.get(); }

    [[nodiscard]] bool isBelowLatest(const std::string& path) const {
        return path.starts_with(latestPath) &&
               (path.size() == latestPath.size() || path[latestPath.size()] == '/');
    }

    bool step(const std::string& name, bool creates) {
        const int parent = current();
        if (creates && mkdirat(parent, name.c_str(), everybody) != 0 && errno != EEXIST)
            return false;
        Descriptor next(openat(parent, name.c_str(), folderFlags | O_NOFOLLOW));
        if (!next) return false;
        latest = std::move(next);
        return true;
    }

    Descriptor latest;
    std::string latestPath;
};

TargetFolder::TargetFolder(std::unique_ptr<State> state) : state_(std::move(state)) {}
TargetFolder::TargetFolder(TargetFolder&&) noexcept = default;
TargetFolder& TargetFolder::operator=(TargetFolder&&) noexcept = default;
TargetFolder::~TargetFolder() = default;

std::optional<TargetFolder> TargetFolder::create(const std::string& path, std::error_code& error) {
    if (path.empty() || path.find('\0') != std::string::npos) {
        error = std::make_error_code(std::errc::invalid_argument);
        return std::nullopt;
    }
    std::filesystem::create_directories(path, error);
    auto state = std::make_unique<State>();
    state->root = Descriptor(open(path.c_str(), folderFlags));
    // What the system says of the folder itself tells more than what became of its parents.
    error = state->root ? std::error_code() : latestError();
    if (!state->root) return std::nullopt;
    return TargetFolder(std::move(state));
}

bool TargetFolder::makeFolder(std::string_view name, std::error_code& error) {
    const auto path = cleaned(name, error);
    return path && state_->enter(*path, true, error) >= 0;
}

std::shared_ptr<FileHandle> TargetFolder::openFolder(std::string_view name,
                                                     std::error_code& error) {
    const auto path = cleaned(name, error);
    const int folder = path ? state_->enter(*path, false, error) : -1;
    if (folder < 0) return nullptr;
    const int copy = fcntl(folder, F_DUPFD_CLOEXEC, 0);
    if (copy < 0) error = latestError();
    return copy < 0 ? nullptr : std::make_shared<FileHandle>(copy);
}

std::shared_ptr<FileHandle> TargetFolder::makeFile(std::string_view name, std::error_code& error,
                                                   std::uint32_t permissions) {
    const auto place = placeOf(name, error);
    if (place && name.ends_with('/')) error = std::make_error_code(std::errc::is_a_directory);
    if (error) return nullptr;
    const int parent = state_->enter(place->parent, false, error);
    if (parent < 0) return nullptr;

    auto file = createFile(parent, place->name, permissions);
    // The name may be one of several of a file outside, so that file is left as it is.
    if (!file && errno == EEXIST && isPlainFile(parent, place->name) &&
        (unlinkat(parent, place->name.c_str(), 0) == 0 || errno == ENOENT))
        file = createFile(parent, place->name, permissions);
    if (!file) error = latestError();
    return file ? std::make_shared<FileHandle>(file.release()) : nullptr;
}

bool TargetFolder::removeFile(std::string_view name, std::error_code& error) {
    const auto place = placeOf(name, error);
    const int parent = place ? state_->enter(place->parent, false, error) : -1;
    if (parent < 0) return false;
    if (unlinkat(parent, place->name.c_str(), 0) != 0) error = latestError();
    return !error;
}

}  // namespace supportsdk
