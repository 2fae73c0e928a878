#include "supportsdk/proactive/files/NewFile.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>

#include "supportsdk/proactive/files/LatestError.h"

namespace supportsdk {

namespace {

constexpr mode_t everybody = 0666;
/// Each turn that fails means that somebody else was quicker.
constexpr int attempts = 8;

/// Of a name behind which nothing fits the beginning goes, up to the next letter of UTF-8.
std::string partNameOf(const std::string& name) {
    constexpr std::string_view ending = ".part";
    auto start = name.size() - std::min(name.size(), NAME_MAX - ending.size());
    while (start > 0 && start < name.size() && (name[start] & 0xc0) == 0x80) start++;
    return name.substr(start).append(ending);
}

}  // namespace

std::unique_ptr<NewFile> NewFile::create(const std::string& path, std::error_code& error) {
    error = std::make_error_code(std::errc::invalid_argument);
    const auto slash = path.rfind('/');
    const auto start = slash == std::string::npos ? 0 : slash + 1;
    if (path.empty() || path.find('\0') != std::string::npos) return nullptr;
    error = std::make_error_code(std::errc::is_a_directory);
    if (start == path.size()) return nullptr;

    // The folder stays open: the host may change its working folder meanwhile.
    const auto parent = start == 0 ? "." : path.substr(0, start);
    Descriptor folder(::open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    error = folder ? std::error_code() : latestError();
    if (!folder) return nullptr;
    std::unique_ptr<NewFile> file(new NewFile(std::move(folder), path.substr(start)));
    return file->open(error) ? std::move(file) : nullptr;
}

NewFile::NewFile(Descriptor folder, std::string name)
    : folder_(std::move(folder)), name_(std::move(name)), partName_(partNameOf(name_)) {}

bool NewFile::open(std::error_code& error) {
    if (!isWayFree(error)) return false;
    for (int attempt = 0; attempt < attempts; attempt++) {
        lock_ = create();
        if (lock_) return openHandle(error);
        if (errno != EEXIST || !removeLeftover()) {
            error = latestError();
            return false;
        }
    }
    error = {EBUSY, std::generic_category()};
    return false;
}

bool NewFile::openHandle(std::error_code& error) {
    identity_ = FileIdentity::of(lock_.get());
    const int copy = fcntl(lock_.get(), F_DUPFD_CLOEXEC, 0);
    if (copy < 0) error = latestError();
    handle_ = std::make_unique<FileHandle>(copy);
    return !error;
}

/// A device, a pipe or a link is somebody's: renaming would replace them like a file.
bool NewFile::isWayFree(std::error_code& error) {
    struct stat status {};
    if (fstatat(folder_.get(), name_.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0) {
        former_ = FileIdentity::of(status);
        if (S_ISREG(status.st_mode)) return true;
        error = std::make_error_code(S_ISDIR(status.st_mode) ? std::errc::is_a_directory
                                                             : std::errc::file_exists);
    } else if (errno != ENOENT) {
        error = latestError();
    }
    return !error;
}

/// The lock, which ends with the process, tells a file that grows from one that was left.
Descriptor NewFile::create() {
    Descriptor file(openat(folder_.get(), partName_.c_str(),
                           O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, everybody));
    if (!file) return file;
    // A file system may have no locks.
    const bool isTaken = flock(file.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    if (!isTaken && isOurs(file.get())) return file;
    errno = EBUSY;
    return {};
}

/// Whether nothing is left in the way; errno says what is.
bool NewFile::removeLeftover() {
    struct stat status {};
    if (fstatat(folder_.get(), partName_.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT;
    errno = EEXIST;
    if (!S_ISREG(status.st_mode)) return false;
    // For writing: some file systems lock nothing else exclusively.
    const Descriptor file(
        openat(folder_.get(), partName_.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file) return errno == ENOENT;
    if (flock(file.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        errno = EBUSY;
        return false;
    }
    return !isOurs(file.get()) || unlinkat(folder_.get(), partName_.c_str(), 0) == 0;
}

/// Whether the descriptor is what has the name now.
bool NewFile::isOurs(int descriptor) const {
    struct stat status {};
    return fstatat(folder_.get(), partName_.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           FileIdentity::of(status) == FileIdentity::of(descriptor);
}

NewFile::~NewFile() {
    if (lock_ && isOurs(lock_.get())) unlinkat(folder_.get(), partName_.c_str(), 0);
}

bool NewFile::is(const FileIdentity& file) const {
    return file == identity_ || file == former_;
}

bool NewFile::commit(std::error_code& error) {
    // Closing tells of the last failures. The lock outlasts it.
    if (!handle_->sync(error) || !handle_->close(error) || !isWayFree(error)) return false;
    // Without locks somebody else may have taken the growing file for a leftover.
    if (!isOurs(lock_.get())) error = {EBUSY, std::generic_category()};
    if (error) return false;
    if (renameat(folder_.get(), partName_.c_str(), folder_.get(), name_.c_str()) != 0) {
        error = latestError();
        return false;
    }
    lock_.reset();
    // The file is there, whatever becomes of this.
    (void)fsync(folder_.get());
    return true;
}

}  // namespace supportsdk
