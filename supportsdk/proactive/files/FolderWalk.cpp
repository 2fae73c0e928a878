#include "supportsdk/proactive/files/FolderWalk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>
#include <vector>

#include "supportsdk/proactive/files/Descriptor.h"
#include "supportsdk/proactive/files/FileIdentity.h"

namespace supportsdk {

namespace {

/// So many folders stay open at once; those above are found again from below.
constexpr std::size_t openFolders = 16;
constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

struct Name {
    std::string text;
    bool isFolder;
};

struct Level {
    Descriptor folder;
    FileIdentity identity;
    std::vector<Name> names;
    std::size_t next = 0;
    /// Of the path of this folder.
    std::size_t pathLength = 0;
};

struct CloseFolder {
    void operator()(DIR* stream) const { closedir(stream); }
};

bool isFolder(int parent, const dirent& entry) {
    if (entry.d_type != DT_UNKNOWN) return entry.d_type == DT_DIR;
    struct stat status {};
    return fstatat(parent, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISDIR(status.st_mode);
}

/// Whether all names could be read.
bool listNames(int folder, std::vector<Name>& names) {
    // The stream closes its descriptor with itself; the walk still needs its own.
    Descriptor copy(fcntl(folder, F_DUPFD_CLOEXEC, 0));
    const std::unique_ptr<DIR, CloseFolder> stream(copy ? fdopendir(copy.get()) : nullptr);
    if (!stream) return false;
    (void)copy.release();
    errno = 0;
    while (const auto* entry = readdir(stream.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            names.push_back({std::string(name), isFolder(folder, *entry)});
        errno = 0;
    }
    const bool isWhole = errno == 0;
    std::sort(names.begin(), names.end(),
              [](const Name& left, const Name& right) { return left.text < right.text; });
    return isWhole;
}

class Walker {
 public:
    Walker(const std::function<Walk(const FolderEntry&)>& visit,
           const std::function<void(const std::string&)>& unreadable)
        : visit_(visit), unreadable_(unreadable) {}

    Walk run(const std::string& folder) {
        if (folder.find('\0') == std::string::npos)
            enter(AT_FDCWD, folder.c_str(), folderFlags);
        else
            report();
        while (!levels_.empty()) {
            if (step() == Walk::ends) return Walk::ends;
        }
        return Walk::goesOn;
    }

 private:
    Walk step() {
        auto& level = levels_.back();
        path_.resize(level.pathLength);
        if (level.next == level.names.size()) {
            leave();
            return Walk::goesOn;
        }
        const auto name = std::move(level.names[level.next++]);
        if (!path_.empty()) path_ += '/';
        path_ += name.text;
        const auto walk =
            visit_({path_, level.folder.get(), name.text.c_str(), name.isFolder, levels_.size()});
        if (walk == Walk::goesOn && name.isFolder)
            enter(level.folder.get(), name.text.c_str(), folderFlags | O_NOFOLLOW);
        return walk;
    }

    void enter(int parent, const char* name, int flags) {
        Level level;
        level.folder = Descriptor(openat(parent, name, flags));
        if (!level.folder || !listNames(level.folder.get(), level.names)) report();
        if (!level.folder) return;
        level.identity = FileIdentity::of(level.folder.get());
        level.pathLength = path_.size();
        if (levels_.size() >= openFolders) levels_[levels_.size() - openFolders].folder.reset();
        levels_.push_back(std::move(level));
    }

    void leave() {
        const auto left = std::move(levels_.back());
        levels_.pop_back();
        if (levels_.empty() || levels_.back().folder) return;
        auto& level = levels_.back();
        level.folder = Descriptor(openat(left.folder.get(), "..", folderFlags));
        if (level.folder && FileIdentity::of(level.folder.get()) == level.identity) return;
        // Somebody has moved the folder away: what lies above it now is another.
        level.names.resize(level.next);
        path_.resize(level.pathLength);
        report();
    }

    void report() {
        if (unreadable_) unreadable_(path_);
    }

    const std::function<Walk(const FolderEntry&)>& visit_;
    const std::function<void(const std::string&)>& unreadable_;
    std::vector<Level> levels_;
    std::string path_;
};

}  // namespace

Walk walkFolder(const std::string& folder, const std::function<Walk(const FolderEntry&)>& visit,
                const std::function<void(const std::string&)>& unreadable) {
    return Walker(visit, unreadable).run(folder);
}

}  // namespace supportsdk
