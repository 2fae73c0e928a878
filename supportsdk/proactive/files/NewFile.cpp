#include "supportsdk/proactive/files/NewFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace supportsdk {

namespace {

constexpr mode_t everybody = 0666;
/// Each turn that fails means that somebody else was quicker.
constexpr int attempts = 8;

std::error_code latestError() {
    return {errno, std::generic_category()};
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

bool NewFile::open(std::error_code& error) {
    struct stat status {};
    if (fstatat(folder_.get(), name_.c_str(), &status, 0) == 0) {
        former_ = FileIdentity::of(status);
        if (S_ISDIR(status.st_mode)) error = std::make_error_code(std::errc::is_a_directory);
        if (error) return false;
    }
    for (int attempt = 0; attempt < attempts; attempt++) {
        if (Descriptor file = create()) {
            identity_ = FileIdentity::of(file.get());
            handle_ = std::make_unique<FileHandle>(file.release());
            return true;
        }
        if (errno != EEXIST || !removeLeftover()) {
            error = latestError();
            return false;
        }
    }
    error = {EBUSY, std::generic_category()};
    return false;
}

/// The lock, which ends with the process, tells a file that grows from one that was left.
Descriptor NewFile::create() {
    Descriptor file(openat(folder_.get(), partName().c_str(),
                           O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, everybody));
    if (!file) return file;
    // A file system may have no locks.
    const bool isTaken = flock(file.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    if (!isTaken && isOurs(file.get())) return file;
    errno = EBUSY;
    return {};
}

/// Whether the way is free; errno says what is in it.
bool NewFile::removeLeftover() {
    struct stat status {};
    if (fstatat(folder_.get(), partName().c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT;
    errno = EEXIST;
    if (!S_ISREG(status.st_mode)) return false;
    const Descriptor file(
        openat(folder_.get(), partName().c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file) return errno == ENOENT;
    if (flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK) errno = EBUSY;
        return false;
    }
    return !isOurs(file.get()) || unlinkat(folder_.get(), partName().c_str(), 0) == 0;
}

/// Whether the descriptor is what has the name now.
bool NewFile::isOurs(int descriptor) const {
    struct stat status {};
    return fstatat(folder_.get(), partName().c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           FileIdentity::of(status) == FileIdentity::of(descriptor);
}

NewFile::~NewFile() {
    if (handle_) unlinkat(folder_.get(), partName().c_str(), 0);
}

bool NewFile::is(const FileIdentity& file) const {
    return file == identity_ || file == former_;
}

bool NewFile::commit(std::error_code& error) {
    if (!handle_->sync(error)) return false;
    // The lock goes with the descriptor, so the name goes first.
    if (renameat(folder_.get(), partName().c_str(), folder_.get(), name_.c_str()) != 0) {
        error = latestError();
        return false;
    }
    const auto handle = std::move(handle_);
    return handle->close(error);
}

}  // namespace supportsdk
