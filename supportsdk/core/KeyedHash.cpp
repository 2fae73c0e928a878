#include "supportsdk/core/KeyedHash.h"

#include <cstring>
#include <random>

namespace supportsdk {

namespace {

__extension__ using Wide = unsigned __int128;

constexpr std::uint64_t prime = (std::uint64_t{1} << 61U) - 1;
/// Below the prime, whatever they hold.
constexpr std::size_t bytesAtATime = 7;

std::uint64_t multiplied(std::uint64_t one, std::uint64_t two) {
    const Wide product = Wide{one} * two;
    const auto sum =
        static_cast<std::uint64_t>(product & prime) + static_cast<std::uint64_t>(product >> 61U);
    return sum >= prime ? sum - prime : sum;
}

}  // namespace

KeyedHash::KeyedHash() {
    std::random_device device;
    key_ = std::uniform_int_distribution<std::uint64_t>(1, prime - 1)(device);
}

std::size_t KeyedHash::operator()(std::string_view text) const {
    // The length comes first: texts that differ by zero bytes at the end are not the same.
    std::uint64_t hash = multiplied(text.size() + 1, key_);
    while (!text.empty()) {
        const auto piece = text.substr(0, bytesAtATime);
        std::uint64_t number = 0;
        std::memcpy(&number, piece.data(), piece.size());
        hash = multiplied(hash + number, key_);
        text.remove_prefix(piece.size());
    }
    return hash;
}

}  // namespace supportsdk
