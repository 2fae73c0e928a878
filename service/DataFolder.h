#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace supportsdk::service {

/// The folder with a service's state. One service at a time holds it.
class DataFolder {
 public:
    /// Takes the folder and creates it when missing; with an empty path a fresh one. Null when
    /// another service holds it, or when it cannot be created.
    static std::unique_ptr<DataFolder> take(const std::filesystem::path& path);

    /// Lets go. A fresh folder goes away.
    ~DataFolder();
    DataFolder(const DataFolder&) = delete;
    DataFolder& operator=(const DataFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

    /// Leaves a word for readWord(); all of it or nothing is ever seen.
    bool leaveWord(const std::string& text) const;
    /// What the service that holds the folder has left.
    static std::optional<std::string> readWord(const std::filesystem::path& folder);

 private:
    DataFolder() = default;

    std::filesystem::path path_;
    bool fresh_ = false;
    int lock_ = -1;
};

}  // namespace supportsdk::service
