#include "supportsdk/proactive/files/FileHandle.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "supportsdk/proactive/files/LatestError.h"
#include "supportsdk/proactive/files/WriteSignals.h"

namespace supportsdk {

namespace {

constexpr mode_t everybody = 0666;

std::shared_ptr<FileHandle> open(const std::string& path, int flags) {
    // A path with a zero byte would name another file.
    if (path.find('\0') != std::string::npos) return nullptr;
    const int descriptor = ::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK, everybody);
    return descriptor < 0 ? nullptr : std::make_shared<FileHandle>(descriptor);
}

}  // namespace

std::shared_ptr<FileHandle> FileHandle::forReadingAtPath(const std::string& path) {
    return open(path, O_RDONLY);
}

std::shared_ptr<FileHandle> FileHandle::forWritingAtPath(const std::string& path) {
    return open(path, O_WRONLY | O_CREAT | O_TRUNC);
}

FileHandle::~FileHandle() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

template <typename Read>
std::size_t FileHandle::fill(std::span<std::byte> into, std::error_code& error, const Read& read) {
    const std::lock_guard lock(mutex_);
    error.clear();
    std::size_t done = 0;
    while (done < into.size()) {
        const auto count = read(into.subspan(done), done);
        if (count == 0) break;
        if (count > 0) {
            done += static_cast<std::size_t>(count);
        } else if (errno != EINTR) {
            error = latestError();
            break;
        }
    }
    return done;
}

std::size_t FileHandle::read(std::span<std::byte> into, std::error_code& error) {
    return fill(into, error, [this](std::span<std::byte> rest, std::size_t) {
        return ::read(descriptor_, rest.data(), rest.size());
    });
}

std::size_t FileHandle::readAt(std::uintmax_t place, std::span<std::byte> into,
                               std::error_code& error) {
    return fill(into, error, [this, place](std::span<std::byte> rest, std::size_t done) {
        // A place beyond what the system can count becomes negative and is refused.
        return ::pread(descriptor_, rest.data(), rest.size(), static_cast<off_t>(place + done));
    });
}

bool FileHandle::write(std::span<const std::byte> data, std::error_code& error) {
    const std::lock_guard lock(mutex_);
    error.clear();
    WriteSignals signals;
    while (!data.empty()) {
        const auto count = ::write(descriptor_, data.data(), data.size());
        if (count >= 0) {
            data = data.subspan(static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            error = latestError();
            signals.take();
            return false;
        }
    }
    return true;
}

bool FileHandle::seek(std::uintmax_t place, std::error_code& error) {
    const std::lock_guard lock(mutex_);
    error.clear();
    // A place beyond what the system can count becomes negative and is refused.
    if (::lseek(descriptor_, static_cast<off_t>(place), SEEK_SET) >= 0) return true;
    error = latestError();
    return false;
}

bool FileHandle::sync(std::error_code& error) {
    const std::lock_guard lock(mutex_);
    error.clear();
    if (::fsync(descriptor_) == 0) return true;
    error = latestError();
    return false;
}

bool FileHandle::close(std::error_code& error) {
    const std::lock_guard lock(mutex_);
    error.clear();
    const int descriptor = std::exchange(descriptor_, -1);
    if (::close(descriptor) == 0) return true;
    error = latestError();
    return false;
}

bool FileHandle::setAttributes(std::uint32_t permissions, std::int64_t modified,
                               std::error_code& error) {
    const std::lock_guard lock(mutex_);
    error.clear();
    const timespec times[] = {{0, UTIME_OMIT}, {static_cast<time_t>(modified), 0}};
    if (fchmod(descriptor_, permissions & 0777) == 0 && futimens(descriptor_, times) == 0)
        return true;
    error = latestError();
    return false;
}

bool FileHandle::isPlain() const {
    const std::lock_guard lock(mutex_);
    struct stat status {};
    return fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode);
}

bool FileHandle::isAtPath(const std::string& path) const {
    const std::lock_guard lock(mutex_);
    struct stat own {};
    struct stat there {};
    return fstat(descriptor_, &own) == 0 && stat(path.c_str(), &there) == 0 &&
           own.st_dev == there.st_dev && own.st_ino == there.st_ino;
}

std::uintmax_t FileHandle::place() const {
    const std::lock_guard lock(mutex_);
    const auto place = ::lseek(descriptor_, 0, SEEK_CUR);
    return place < 0 ? 0 : static_cast<std::uintmax_t>(place);
}

std::uintmax_t FileHandle::size() const {
    const std::lock_guard lock(mutex_);
    struct stat status {};
    if (fstat(descriptor_, &status) != 0 || status.st_size < 0) return 0;
    return static_cast<std::uintmax_t>(status.st_size);
}

}  // namespace supportsdk
