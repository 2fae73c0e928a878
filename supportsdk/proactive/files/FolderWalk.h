#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace supportsdk {

/// What becomes of a walk; it passes by a folder that it does not enter.
enum class Walk { goesOn, passesBy, ends };

/// Where a walk stands; valid during the call alone.
struct FolderEntry {
    /// Relative to the folder that is walked; may be longer than the system takes a path.
    const std::string& path;
    /// The open folder that the entry lies in, for openat() and the like, and its name there.
    int folder;
    const char* name;
    /// A folder, and not a symbolic link to one.
    bool isFolder;
    /// 1 in the folder that is walked itself.
    std::size_t level;
};

/// Visits everything below `folder`, each folder before its content, in the order of the bytes of
/// the names, so that equal folders give equal archives. Symbolic links are visited, not entered.
/// What cannot be listed counts as empty and is given to `unreadable`, which may be null, with its
/// path relative to `folder`: "" is that itself. Needs memory for the names of the folders that are
/// open, not for the tree, and few descriptors; any depth. Returns whether it came to its end.
Walk walkFolder(const std::string& folder, const std::function<Walk(const FolderEntry&)>& visit,
                const std::function<void(const std::string&)>& unreadable = nullptr);

}  // namespace supportsdk
