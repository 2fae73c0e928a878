#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace supportsdk::test {

/// A fresh folder that goes, with all that is in it, with this object.
class TemporaryFolder {
 public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "supportsdk-XXXXXX").string();
        path = mkdtemp(name.data()) ? name : "";
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        if (!path.empty()) std::filesystem::remove_all(path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path path;
};

}  // namespace supportsdk::test
