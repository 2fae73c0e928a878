#include "supportsdk/proactive/files/TargetFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <set>
#include <vector>

#include "supportsdk/proactive/files/Descriptor.h"
#include "supportsdk/proactive/files/FileIdentity.h"
#include "supportsdk/proactive/files/LatestError.h"

namespace supportsdk {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
constexpr mode_t everybody = 0777;
constexpr mode_t ownerAlone = 0700;
/// What stays open of a deep path: the lowest levels, and one of so many above them, from which the
/// others are found again.
constexpr std::size_t openLevels = 16;
constexpr std::size_t openEvery = 32;
/// Beyond this, for an archive of folders without end, those that were made are forgotten.
constexpr std::size_t maximumMade = 65'536;

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
    if (levels > TargetFolder::maximumLevels)
        error = std::make_error_code(std::errc::filename_too_long);
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
    /// What both have in common with the latest path stays open.
    int enter(const std::string& path, bool creates, std::error_code& error) {
        leaveFor(path);
        std::size_t start = latestPath.size() + (latestPath.empty() ? 0 : 1);
        while (start < path.size()) {
            const auto end = std::min(path.find('/', start), path.size());
            Descriptor next = step(path.substr(start, end - start), creates);
            if (!next) {
                error = latestError();
                return -1;
            }
            // Piece by piece: a hostile path has half a million of them.
            if (!latestPath.empty()) latestPath += '/';
            latestPath.append(path, start, end - start);
            push(std::move(next));
            start = end + 1;
        }
        error.clear();
        return current();
    }

    /// umask(2) tells only by changing it, for all threads; so a new file has to tell. It goes
    /// before anything comes into it.
    void learnUmask(int parent, const std::string& name) {
        if (umaskLeaves) return;
        Descriptor file = createFile(parent, name, everybody);
        struct stat status {};
        if (!file) return;
        if (fstat(file.get(), &status) == 0) umaskLeaves = status.st_mode & everybody;
        file.reset();
        unlinkat(parent, name.c_str(), 0);
    }

    Descriptor root;
    std::set<FileIdentity> made;
    std::optional<mode_t> umaskLeaves;

 private:
    struct Level {
        Descriptor folder;
        std::size_t pathLength;
    };

    [[nodiscard]] int current() const {
        return levels.empty() ? root.get() : levels.back().folder.get();
    }

    /// Goes up to the lowest open folder that is on the way.
    void leaveFor(const std::string& path) {
        const auto ends = std::ranges::mismatch(latestPath, path);
        const auto common = static_cast<std::size_t>(ends.in1 - latestPath.begin());
        const auto isOnTheWay = [&](const Level& level) {
            const auto length = level.pathLength;
            return length <= common && (length == path.size() || path[length] == '/');
        };
        while (!levels.empty() && !(levels.back().folder && isOnTheWay(levels.back())))
            levels.pop_back();
        latestPath.resize(levels.empty() ? 0 : levels.back().pathLength);
    }

    void push(Descriptor folder) {
        levels.push_back({std::move(folder), latestPath.size()});
        if (levels.size() <= openLevels) return;
        const auto upper = levels.size() - 1 - openLevels;
        if (upper % openEvery != 0) levels[upper].folder.reset();
    }

    Descriptor step(const std::string& name, bool creates) {
        const int parent = current();
        if (creates) learnUmask(parent, name);
        const bool isNew = creates && mkdirat(parent, name.c_str(), everybody) == 0;
        if (creates && !isNew && errno != EEXIST) return {};
        Descriptor next(openat(parent, name.c_str(), folderFlags | O_NOFOLLOW));
        if (next && isNew) remember(FileIdentity::of(next.get()));
        return next;
    }

    void remember(const FileIdentity& folder) {
        if (made.size() >= maximumMade) made.clear();
        made.insert(folder);
    }

    std::vector<Level> levels;
    /// Of the last of them.
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
    if (state->root) error.clear();
    if (!state->root && !error) error = latestError();
    if (!state->root) return std::nullopt;
    return TargetFolder(std::move(state));
}

bool TargetFolder::makeFolder(std::string_view name, std::error_code& error) {
    const auto path = cleaned(name, error);
    return path && state_->enter(*path, true, error) >= 0;
}

bool TargetFolder::hasMade(std::string_view name) {
    std::error_code error;
    const auto path = cleaned(name, error);
    const int folder = path ? state_->enter(*path, false, error) : -1;
    return folder >= 0 && state_->made.contains(FileIdentity::of(folder));
}

std::uint32_t TargetFolder::granted(std::uint32_t permissions) const {
    return permissions & state_->umaskLeaves.value_or(ownerAlone);
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

    state_->learnUmask(parent, place->name);
    auto file = createFile(parent, place->name, permissions);
    // The name may be one of several of a file outside, so that file is left as it is.
    if (!file && errno == EEXIST && isPlainFile(parent, place->name) &&
        (unlinkat(parent, place->name.c_str(), 0) == 0 || errno == ENOENT)) {
        state_->learnUmask(parent, place->name);
        file = createFile(parent, place->name, permissions);
    }
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
