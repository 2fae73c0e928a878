#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Platform.h"

namespace supportsdk {

struct LinuxPlatformOptions {
    /// The host's loop. Required: pass an AsioMainQueue, or a MainQueue over the loop you have.
    std::shared_ptr<MainQueue> mainQueue;
    /// Where user defaults live; $XDG_DATA_HOME/supportsdk (or ~/.local/share/supportsdk) when
    /// empty.
    std::filesystem::path dataFolder;
    /// The host application's main bundle: configuration files and an optional Info.json. None when
    /// empty.
    std::filesystem::path mainBundleFolder;
    /// The kit's resources; when empty, those that were built or installed with the library.
    std::filesystem::path resourcesFolder;
    /// Languages of the texts by preference, as "de_AT" or "de"; what LANGUAGE, LC_ALL, LC_MESSAGES
    /// and LANG ask for when empty.
    std::vector<std::string> languages;
    /// Where diagnostic lines go: this sink, else the end of this file, else standard error.
    std::shared_ptr<Log> log;
    std::filesystem::path logFile;
    /// PEM files of certificate authorities trusted beside the system's, for HTTPS and XMPP.
    std::vector<std::filesystem::path> extraAuthorities;
    /// Lets XMPP streams to loopback addresses go on without TLS. For tests on one machine only.
    bool allowClearTextOnLoopback = false;
};

/// A platform for Linux with every slot filled: presenter, progress and global appearance
/// by parts that show nothing, to be replaced by the host's. Starts no thread and opens no
/// file or socket. Any slot may be replaced before the platform is handed to the kit. Null when
/// `mainQueue` is.
SUPPORTSDK_API std::shared_ptr<Platform> linuxPlatform(const LinuxPlatformOptions& options);

}  // namespace supportsdk
