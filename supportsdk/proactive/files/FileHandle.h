#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <system_error>

#include "supportsdk/platform/Export.h"

namespace supportsdk {

/// An open file with a place in it. Any thread: each operation is whole, so two that read the same
/// handle get different parts of the file. Closes the file with itself.
class SUPPORTSDK_API FileHandle {
 public:
    /// Null when the file cannot be opened. Never blocks on a pipe.
    static std::shared_ptr<FileHandle> forReadingAtPath(const std::string& path);
    /// Creates the file, or empties it; null when neither can be done.
    static std::shared_ptr<FileHandle> forWritingAtPath(const std::string& path);

    /// Takes over an open descriptor.
    explicit FileHandle(int descriptor) : descriptor_(descriptor) {}
    ~FileHandle();
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;

    /// Fills `into` from the present place on; less only at the end of the file or with `error`.
    std::size_t read(std::span<std::byte> into, std::error_code& error);
    /// The same from `place` on, counted from the beginning of the file; the present place stays.
    std::size_t readAt(std::uintmax_t place, std::span<std::byte> into, std::error_code& error);
    /// Writes all of `data`; false, with `error`, when some of it could not be written. SIGPIPE and
    /// SIGXFSZ come as errors.
    bool write(std::span<const std::byte> data, std::error_code& error);
    /// From the beginning of the file; reading and writing go on there.
    bool seek(std::uintmax_t place, std::error_code& error);
    /// Returns once what was written would outlast a loss of power.
    bool sync(std::error_code& error);
    /// What a write may have left to be done can fail here. Later operations fail.
    bool close(std::error_code& error);

    /// The last nine bits of `permissions`, and the time of the last change, in seconds since 1970.
    bool setAttributes(std::uint32_t permissions, std::int64_t modified, std::error_code& error);

    /// A plain file: neither a pipe nor a device, which might never end.
    [[nodiscard]] bool isPlain() const;
    /// Whether the path, or what a link there leads to, is this very file.
    [[nodiscard]] bool isAtPath(const std::string& path) const;
    /// Where reading and writing go on; 0 when there is no such place, as in a pipe.
    [[nodiscard]] std::uintmax_t place() const;
    /// Of the file as it is now; 0 when it is not known.
    [[nodiscard]] std::uintmax_t size() const;

 private:
    template <typename Read>
    std::size_t fill(std::span<std::byte> into, std::error_code& error, const Read& read);

    mutable std::mutex mutex_;
    int descriptor_;
};

}  // namespace supportsdk
