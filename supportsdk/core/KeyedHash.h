#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "supportsdk/platform/Export.h"

namespace supportsdk {

/// Hashes texts that a stranger chooses. Each object draws a key of its own, so that nobody can
/// choose texts that all collide: a polynomial of the text over the integers modulo 2^61 - 1,
/// evaluated at the key.
class SUPPORTSDK_API KeyedHash {
 public:
    KeyedHash();

    [[nodiscard]] std::size_t operator()(std::string_view text) const;

 private:
    std::uint64_t key_;
};

}  // namespace supportsdk
