#include "backends/posix/PlainFile.h"

#include <fstream>

namespace supportsdk {

std::optional<Bytes> readPlainFile(const std::filesystem::path& file, std::uintmax_t maximumBytes) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) return std::nullopt;
    const auto size = std::filesystem::file_size(file, error);
    if (error || size > maximumBytes) return std::nullopt;
    Bytes bytes(size);
    std::ifstream in(file, std::ios::binary);
    in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size));
    return in ? std::optional(std::move(bytes)) : std::nullopt;
}

}  // namespace supportsdk
