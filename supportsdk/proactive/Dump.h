#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "supportsdk/platform/Export.h"

namespace supportsdk {

/// Packing of dumps into archives that every tar reads back: POSIX.1-2001 (pax), gzipped (RFC
/// 1952). Any thread; blocks until done, so not on the main thread. Files of any size pass through
/// fixed buffers.

struct DumpProgress {
    /// Of the files' own bytes. The total is what the files held when the packing began; while
    /// unpacking, of the compressed bytes.
    std::uintmax_t bytesDone = 0;
    std::uintmax_t bytesTotal = 0;
    std::size_t filesDone = 0;
    /// The path, as in the archive, that is being worked on.
    std::string path;
};

struct DumpOptions {
    /// Runs on the calling thread, at every file and at least once a MiB.
    std::function<void(const DumpProgress&)> progress;
    /// Stops the work within a MiB; nothing of the target is left then.
    std::stop_token stop;
    /// 1 (fastest) to 9 (smallest); -1 is zlib's own choice.
    int compressionLevel = -1;
    /// Unpacking what holds more than this fails: a small archive may hold more than the disk does.
    std::uintmax_t maximumBytes = UINTMAX_MAX;
};

struct DumpResult {
    enum class End { done, cancelled, failed };

    End end = End::failed;
    /// Why it failed, in English.
    std::string message;
    std::size_t files = 0;
    std::size_t folders = 0;
    /// What of the sources could not be packed (unreadable, a pipe, a device, gone), or of the
    /// archive not unpacked (a name that leaves the folder, a link, a device); the rest is there.
    std::vector<std::string> skipped;
};

/// Packs folders and files, each under its own last name, into the .tar.gz `target`, which appears
/// once it is complete and not before. Symbolic links are packed as what they lead to when that is
/// a file. A file that shrinks meanwhile is filled up with zeros, one that grows is cut, so that
/// what follows stays readable. `target` itself is left out. Two sources of the same last name: the
/// second is skipped.
SUPPORTSDK_API DumpResult packDump(const std::vector<std::string>& sources,
                                   const std::string& target, const DumpOptions& options = {});

/// Unpacks a tar archive, gzipped or not, with long names in the ways of POSIX and of GNU, into the
/// folder `target`. Files get their modification time and permissions (never set-user-id and the
/// like). A damaged archive fails; what came before the damage stays.
SUPPORTSDK_API DumpResult unpackDump(const std::string& archive, const std::string& target,
                                     const DumpOptions& options = {});

}  // namespace supportsdk
