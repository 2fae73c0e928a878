#include "supportsdk/proactive/GzipData.h"

#include <cmath>
#include <new>
#include <utility>

#include "supportsdk/proactive/ZBytes.h"

namespace supportsdk {

namespace {

constexpr float bestLevel = 9;

std::optional<Bytes> copied(std::span<const std::byte> data) try {
    return Bytes(data.begin(), data.end());
} catch (const std::bad_alloc&) {
    return std::nullopt;
}

/// zlib's level; nothing when it has none.
std::optional<int> zlibLevel(float level) {
    if (level < 0) return ZStream::defaultLevel;
    const float rounded = std::round(bestLevel * level);
    // Also not when it is not a number.
    if (!(rounded <= bestLevel)) return std::nullopt;
    return static_cast<int>(rounded);
}

}  // namespace

bool isGzippedData(std::span<const std::byte> data) {
    return data.size() >= 2 && data[0] == std::byte{0x1f} && data[1] == std::byte{0x8b};
}

std::optional<Bytes> gzippedDataWithCompressionLevel(std::span<const std::byte> data, float level) {
    if (data.empty() || isGzippedData(data)) return copied(data);
    const auto known = zlibLevel(level);
    return known ? deflateBytes(data, ZFormat::gzip, *known) : std::nullopt;
}

std::optional<Bytes> gzippedData(std::span<const std::byte> data) {
    return gzippedDataWithCompressionLevel(data, -1);
}

std::optional<Bytes> gunzippedData(std::span<const std::byte> data) {
    if (data.empty() || !isGzippedData(data)) return copied(data);
    auto inflated = inflateBytes(data, ZFormat::gzip, 0);
    if (!inflated) return std::nullopt;
    return std::move(inflated->bytes);
}

}  // namespace supportsdk
