#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "fuzz/Fuzzing.h"
#include "supportsdk/proactive/DCTar.h"
#include "supportsdk/proactive/GzipData.h"

using namespace supportsdk;
using fuzz::require;

namespace {

/// Where a file can be written often without wearing a disk.
std::string targetPath() {
    const auto* folder = std::filesystem::exists("/dev/shm") ? "/dev/shm" : "/tmp";
    return std::string(folder) + "/supportsdk-gunzip-" + std::to_string(getpid());
}

/// Restored by way of files; nothing when that failed, and then nothing is left of it.
std::optional<Bytes> inflateFile(std::span<const std::byte> data, bool isGzip) {
    static const std::string target = targetPath();
    FileHandle source(memfd_create("gunzip", MFD_CLOEXEC));
    std::error_code error;
    require(source.write(data, error) && source.seek(0, error));
    const bool done = DCTar::fileInflate(source, isGzip, target);
    require(done == std::filesystem::exists(target));
    if (!done) return std::nullopt;
    std::ifstream file(target, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    std::filesystem::remove(target);
    return toBytes(text);
}

void restore(std::span<const std::byte> data) {
    for (const bool isGzip : {true, false}) {
        require(inflateFile(data, isGzip) == DCTar::inflate(data, isGzip));
    }
    const auto whole = DCTar::inflate(data, true);
    const auto some = gunzippedData(data);
    require(some.has_value());
    if (!isGzippedData(data)) {
        require(std::ranges::equal(*some, data));
    } else if (whole) {
        require(whole == some);
    } else {
        // The input is too short to reach the bound, so this is the buffer as it grew.
        require(some->size() % std::max<std::size_t>(data.size() / 2, 1) == 0);
    }
}

/// Damage within a stream, which no mutation of the stream as a whole would often find.
void damage(std::span<const std::byte> text, std::size_t place, std::byte change) {
    if (isGzippedData(text)) return;
    auto stream = *gzippedDataWithCompressionLevel(text, 1);
    stream[place % stream.size()] ^= change;
    const auto restored = DCTar::gzipDecompress(stream);
    require(!restored || std::ranges::equal(*restored, text));
    restore(stream);
}

}  // namespace

/// The input is restored as it is; then what comes behind its first three bytes is compressed, and
/// damaged as these tell.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const auto data = std::as_bytes(std::span(bytes, size));
    restore(data);
    if (size < 4) return 0;
    const auto place = std::to_integer<std::size_t>(data[0]) << 8;
    damage(data.subspan(3), place + std::to_integer<std::size_t>(data[1]), data[2]);
    return 0;
}
