#include "supportsdk/proactive/files/FilePaths.h"

#include <unistd.h>

#include <filesystem>

namespace supportsdk {

namespace {

bool isPath(const std::string& path) {
    return path.find('\0') == std::string::npos;
}

}  // namespace

bool fileExists(const std::string& path) {
    std::error_code ignored;
    return isPath(path) && std::filesystem::exists(path, ignored);
}

bool isSameFile(const std::string& path, const std::string& other) {
    std::error_code ignored;
    return isPath(path) && isPath(other) && std::filesystem::equivalent(path, other, ignored);
}

void removeFile(const std::string& path) {
    if (isPath(path)) ::unlink(path.c_str());
}

}  // namespace supportsdk
