#pragma once

#include <cstdint>
#include <cstdlib>

namespace supportsdk::fuzz {

/// What holds for every input: the fuzzer keeps one that breaks it.
inline void require(bool condition) {
    if (!condition) std::abort();
}

}  // namespace supportsdk::fuzz
