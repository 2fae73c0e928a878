#include "backends/sqlite/DefaultsFolder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <thread>

namespace supportsdk {
namespace {

constexpr auto kLockPatience = std::chrono::seconds{5};

std::string timeStamp() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    gmtime_r(&now, &parts);
    char text[32];
    return {text, std::strftime(text, sizeof(text), "%Y%m%dT%H%M%SZ", &parts)};
}

bool sync(const std::filesystem::path& folder) {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return false;
    const bool synced = ::fsync(descriptor) == 0;
    ::close(descriptor);
    return synced;
}

}  // namespace

void makePrivateFolder(const std::filesystem::path& folder) {
    std::error_code ignored;
    if (folder.empty() || std::filesystem::exists(folder, ignored)) return;
    makePrivateFolder(folder.parent_path());
    ::mkdir(folder.c_str(), 0700);
}

void makePrivateFile(const std::filesystem::path& file) {
    // Never opens an existing one: closing it would drop the locks that this process has on it.
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (descriptor >= 0) ::close(descriptor);
}

bool syncFolder(const std::filesystem::path& folder) {
    return sync(folder) && sync(std::filesystem::absolute(folder).parent_path());
}

std::string setAside(const std::filesystem::path& file) {
    const std::string base = file.string() + ".damaged-" + timeStamp();
    std::string name = base;
    std::error_code error;
    for (int i = 2; std::filesystem::exists(name, error); ++i) {
        name = base + "-" + std::to_string(i);
    }
    // The log goes first: left behind alone, it would be played into the next database.
    for (const char* companion : {"-wal", "-shm"}) {
        ::rename((file.string() + companion).c_str(), (name + companion).c_str());
    }
    return ::rename(file.c_str(), name.c_str()) == 0 ? name : "";
}

OpeningLock::OpeningLock(const std::filesystem::path& file)
    : descriptor_(::open((file.string() + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
    const auto deadline = std::chrono::steady_clock::now() + kLockPatience;
    while (descriptor_ >= 0 && ::flock(descriptor_, LOCK_EX | LOCK_NB) != 0 &&
           std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds{5});
    }
}

OpeningLock::~OpeningLock() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

}  // namespace supportsdk
