#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace supportsdk::test {

/// Memory, where the system has it, for folders by the thousand, which cost a disk seconds.
inline std::filesystem::path folderInMemory() {
    std::error_code ignored;
    const std::filesystem::path memory = "/dev/shm";
    return std::filesystem::is_directory(memory, ignored) ? memory
                                                          : std::filesystem::temp_directory_path();
}

/// A fresh folder that goes, with all that is in it, with this object.
class TemporaryFolder {
 public:
    explicit TemporaryFolder(
        const std::filesystem::path& parent = std::filesystem::temp_directory_path()) {
        std::string name = (parent / "supportsdk-XXXXXX").string();
        path = mkdtemp(name.data()) ? name : "";
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        if (!path.empty()) std::filesystem::remove_all(path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    /// Makes the folders on the way, too.
    std::filesystem::path write(const std::filesystem::path& name, std::string_view content) const {
        const auto file = path / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << content;
        return file;
    }

    /// "" when there is no such file.
    std::string read(const std::filesystem::path& name) const {
        std::ifstream file(path / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::filesystem::path path;
};

}  // namespace supportsdk::test
