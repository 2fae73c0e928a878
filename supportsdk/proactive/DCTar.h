#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <variant>

#include "supportsdk/core/Error.h"
#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Values.h"
#include "supportsdk/proactive/files/FileHandle.h"

namespace supportsdk {

/// What is read from: nothing, bytes in memory, or an open file. The caller keeps it alive.
using TarObject = std::variant<std::monostate, std::span<const std::byte>, FileHandle*>;

struct TarRange {
    std::uintmax_t location = 0;
    std::size_t length = 0;
};

/// Where a failure is described; null when the caller does not want to know.
using ErrorSlot = std::optional<SupportError>*;

/// Tar archives (POSIX.1-1988) and gzip (RFC 1952), after the rules of the kit's first version,
/// which are narrower than those of other programs: a file whose size is no multiple of 512 is
/// followed by padding that spoils what comes after it, and reading knows neither prefixes nor long
/// names. packDump() and unpackDump() (Dump.h) lose nothing; prefer them.
///
/// Any thread; blocks until done; files of any size pass through fixed buffers. False, or nothing,
/// is failure. Errors have the domain "Skepuk"; those of a file that could not be written carry its
/// errno instead.
class SUPPORTSDK_API DCTar {
 public:
    DCTar() = delete;

    static constexpr const char* errorDomain = "Skepuk";

    // --- By the names of files (DCTar.cpp) ---

    /// Tars the folder `path` when `target` ends in ".tar" or ".tar.gz", and gzips what then lies
    /// at `target` without its ".gz" when it ends so; that file is removed afterwards. A target in
    /// ".gz" alone compresses the file at the shortened name, not `path`. True although the error
    /// is set when taring failed. Any other target: nothing is done, true.
    static bool compressFileAtPath(const std::string& path, const std::string& target,
                                   ErrorSlot error);
    /// Gunzips a source in ".gz" to its name without that, in place of what is there; extracts
    /// a ".tar", or what has become one, into the folder `target`, and removes it, also when it was
    /// the caller's own. True when the name says neither, and when gunzipping failed.
    static bool decompressFileAtPath(const std::string& path, const std::string& target,
                                     ErrorSlot error);
    /// False, and no folder, when `data` is no gzip.
    static bool decompressData(std::span<const std::byte> data, const std::string& target,
                               ErrorSlot error);

    // --- Writing (DCTarWriting.cpp) ---

    /// Archives what is below the folder `path`, with names relative to it, into `target`, which is
    /// replaced unless it is a folder, or the source itself. A plain file gives an archive of
    /// nothing; a target below the source becomes a part of itself. Links are packed as what they
    /// lead to, a folder without its content; pipes, devices, dangling links and what cannot be
    /// read are left out. A name that is not ASCII becomes an empty one; of a path that is too long
    /// for a header the end is kept. Nothing is left of an archive that could not be completed.
    static bool tarFileAtPath(const std::string& path, const std::string& target, ErrorSlot error);
    /// One entry of that walk: header, then the data of a file.
    static bool chunkedWriteDataFromPath(const std::string& path, const std::string& folder,
                                         bool isDirectory, FileHandle& target);
    static bool writeHeaderForPath(const std::string& path, const std::string& basePath,
                                   bool isDirectory, FileHandle& target);
    /// A file's data and, when that is no multiple of 512, 1024 bytes of padding.
    static bool chunkedWriteDataFromPath(const std::string& path, FileHandle& target);
    /// Clears `field`, then copies as much of `text` as fits into its first `length` bytes; nothing
    /// when `text` is not ASCII.
    static void writeString(const std::string& text, std::span<std::byte> field,
                            std::size_t length);

    // --- Reading (DCTarReading.cpp) ---

    /// False without an error also when the file cannot be opened; nothing is created then.
    static bool untarFileAtPath(const std::string& path, const std::string& target,
                                ErrorSlot error);
    static bool untarData(std::span<const std::byte> data, const std::string& target,
                          ErrorSlot error);
    /// Extracts folders and files into the folder `target`, which is created. Always true: what
    /// could not be written is missing. Names that would leave the folder count as that.
    static bool untarObject(const TarObject& object, std::uintmax_t size, const std::string& target,
                            ErrorSlot error);
    /// Fields of the header at `offset`; a zero byte, "" and 0 when they cannot be read. So is a
    /// name that is not ASCII, and a size that is not octal.
    static char typeForObject(const TarObject& object, std::uintmax_t offset);
    static std::string nameForObject(const TarObject& object, std::uintmax_t offset);
    static std::int64_t sizeForObject(const TarObject& object, std::uintmax_t offset);
    /// Creates or replaces the file at `path`, wherever that is: the path is not checked. False
    /// when not all of `length` is there: of bytes in memory nothing is written then, of a file
    /// what it has.
    static bool writeFileDataForObject(const TarObject& object, std::uintmax_t location,
                                       std::uintmax_t length, const std::string& path);
    /// `range` of bytes in memory; `length` bytes from `location` of a file. Less at its end,
    /// nothing of no object.
    static std::optional<Bytes> dataForObject(const TarObject& object, const TarRange& range,
                                              std::uintmax_t location, std::size_t length);

    // --- Compression (DCTarStreams.cpp) ---

    static std::optional<Bytes> gzipCompress(std::span<const std::byte> data);
    static std::optional<Bytes> gzipDecompress(std::span<const std::byte> data);
    static bool gzipDecompress(const std::string& path, const std::string& target, ErrorSlot error);
    static std::optional<Bytes> zlibCompress(std::span<const std::byte> data);
    static std::optional<Bytes> zlibDecompress(std::span<const std::byte> data);
    /// Nothing for empty data.
    static std::optional<Bytes> deflate(std::span<const std::byte> data, bool isGzip);
    /// Nothing for empty, damaged or cut data, and beyond maximumInflatedBytes.
    static std::optional<Bytes> inflate(std::span<const std::byte> data, bool isGzip);
    /// From the present place of `source` to its end, into a new file.
    static bool fileDeflate(FileHandle& source, bool isGzip, const std::string& target);
    /// The same backwards; ends with the first stream. False for damaged or cut data.
    static bool fileInflate(FileHandle& source, bool isGzip, const std::string& target);

    static SupportError errorWithDetail(const std::string& detail, int code);
};

}  // namespace supportsdk
