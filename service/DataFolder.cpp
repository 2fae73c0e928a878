#include "service/DataFolder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace supportsdk::service {

namespace fs = std::filesystem;

namespace {

constexpr char wordFile[] = "service.json";

fs::path makeFresh() {
    std::error_code error;
    auto pattern = (fs::temp_directory_path(error) / "support-service-XXXXXX").string();
    return mkdtemp(pattern.data()) ? fs::path(pattern) : fs::path();
}

}  // namespace

std::unique_ptr<DataFolder> DataFolder::take(const fs::path& path) {
    std::unique_ptr<DataFolder> folder(new DataFolder);
    folder->fresh_ = path.empty();
    folder->path_ = path.empty() ? makeFresh() : fs::absolute(path);
    if (folder->path_.empty()) return nullptr;
    std::error_code error;
    fs::create_directories(folder->path_, error);
    folder->lock_ = open((folder->path_ / "lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (folder->lock_ < 0 || flock(folder->lock_, LOCK_EX | LOCK_NB) != 0) return nullptr;
    fs::remove(folder->path_ / wordFile, error);
    return folder;
}

DataFolder::~DataFolder() {
    std::error_code error;
    if (lock_ >= 0) close(lock_);
    if (fresh_ && !path_.empty()) fs::remove_all(path_, error);
}

bool DataFolder::leaveWord(const std::string& text) const {
    const auto draft = path_ / "service.json.new";
    // It holds keys.
    const int descriptor = open(draft.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (descriptor < 0) return false;
    const bool written =
        write(descriptor, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    std::error_code error;
    if (close(descriptor) == 0 && written) fs::rename(draft, path_ / wordFile, error);
    return written && !error;
}

std::optional<std::string> DataFolder::readWord(const fs::path& folder) {
    std::ifstream file(folder / wordFile);
    std::ostringstream text;
    text << file.rdbuf();
    return file ? std::optional(text.str()) : std::nullopt;
}

}  // namespace supportsdk::service
