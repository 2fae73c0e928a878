#pragma once

#include <functional>
#include <string>

namespace supportsdk {

/// What became of a walk.
enum class Walk { goesOn, ends };

/// Visits everything below `folder`, each folder before its content, in the order of the bytes of
/// the names, so that equal folders give equal archives. `visit` gets the path relative to
/// `folder`. Symbolic links are visited, not entered. What cannot be listed counts as empty and is
/// given to `unreadable`, which may be null. Needs memory for the names of the folders that are
/// open, not for the tree; any depth. Returns whether it came to its end.
Walk walkFolder(const std::string& folder, const std::function<Walk(const std::string&)>& visit,
                const std::function<void(const std::string&)>& unreadable = nullptr);

}  // namespace supportsdk
