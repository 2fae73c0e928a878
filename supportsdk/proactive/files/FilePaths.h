#pragma once

#include <string>

namespace supportsdk {

/// Paths that a caller gave. One with a zero byte names nothing: the system would read another one
/// from it. Any thread.

/// Of what a symbolic link leads to.
bool fileExists(const std::string& path);
/// Whether both lead to one file.
bool isSameFile(const std::string& path, const std::string& other);
/// A file or symbolic link; a folder stays.
void removeFile(const std::string& path);

}  // namespace supportsdk
