#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

namespace supportsdk::service {

using Time = std::chrono::system_clock::time_point;

/// `bytes` random bytes as lower-case hexadecimal; nobody can guess it.
std::string randomHex(std::size_t bytes);

/// The SHA-256 (FIPS 180-4) of the bytes, as lower-case hexadecimal.
std::string sha256Hex(std::string_view bytes);

/// "yyyy-MM-dd HH:mm:ss", UTC.
std::string dateTimeText(Time time);

/// "yyyy-MM-dd HH:mm:ss.SSS", UTC.
std::string preciseDateTimeText(Time time);

}  // namespace supportsdk::service
