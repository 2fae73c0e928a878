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
    /// unpacking, of the bytes of the archive as it lies there.
    std::uintmax_t bytesDone = 0;
    std::uintmax_t bytesTotal = 0;
    std::size_t filesDone = 0;
    /// The path, as in the archive, that is being worked on.
    std::string path;
};

struct DumpOptions {
    /// Runs on the calling thread, at every file and folder, at least once a MiB, and at the end.
    /// Must not throw.
    std::function<void(const DumpProgress&)> progress;
    /// Stops the work within a MiB. Packing leaves nothing of the target then; unpacking leaves the
    /// files that were complete.
    std::stop_token stop;
    /// 1 (fastest) to 9 (smallest); -1 is zlib's own choice.
    int compressionLevel = -1;
    /// Unpacking an archive that is longer than this, once it is gunzipped, fails: a small one may
    /// hold more than the disk does. Headers count, so a million empty files do, too.
    std::uintmax_t maximumBytes = UINTMAX_MAX;
};

struct DumpResult {
    enum class End { done, cancelled, failed };

    End end = End::failed;
    /// Why it failed, in English.
    std::string message;
    std::size_t files = 0;
    std::size_t folders = 0;
    /// What of the sources could not be packed (unreadable, a pipe, a device, gone, more than
    /// 500 names in each other, of which a folder stands for all below it) or not whole,
    /// or of the archive not unpacked (a name that leaves the folder, a link, a device, a sparse
    /// file); the rest is there. The first 1,000; a last entry tells how many more.
    std::vector<std::string> skipped;
};

/// Packs folders and files, each under its own last name ("." and ".." under the one that the
/// folder has), into the .tar.gz `target`. That appears once it is complete and on the disk, in
/// place of a plain file that was there; until then it grows in `target` + ".part" (a name that is
/// too long for that loses its beginning). Symbolic links are packed as
/// what they lead to when that is a file. A file that shrinks meanwhile is filled up with zeros,
/// one that grows is cut, so that what follows stays readable. `target` itself is left out. Two
/// sources of the same last name: the second is skipped. Fails when there is nothing to pack,
/// or the target cannot be written: another packDump() is at it, or a folder, a device, a pipe or a
/// symbolic link has its name.
SUPPORTSDK_API DumpResult packDump(const std::vector<std::string>& sources,
                                   const std::string& target, const DumpOptions& options = {});

/// Unpacks a tar archive, gzipped or not, with long names in the ways of POSIX and of GNU, into the
/// folder `target`, which is created. Plain files that are in the way are replaced, nothing else
/// is, and nothing is written outside. New files and folders get their modification time, in whole
/// seconds, and of their permissions what the umask leaves (never set-user-id and the like), not
/// their owner; folders that were there keep their own. A damaged archive fails; the files that
/// were complete before the damage stay.
SUPPORTSDK_API DumpResult unpackDump(const std::string& archive, const std::string& target,
                                     const DumpOptions& options = {});

}  // namespace supportsdk
