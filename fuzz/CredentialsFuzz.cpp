#include <array>

#include "fuzz/Fuzzing.h"
#include "supportsdk/core/Ciphers.h"
#include "supportsdk/core/Credentials.h"

using namespace supportsdk;
using fuzz::require;

/// The input up to the first line end is the key; the rest is taken once as the block that an issue
/// carries, and once as what lies in it, since no mutation gets through the cipher.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const auto lineEnd = std::min(input.find('\n'), input.size());
    const auto key = input.substr(0, lineEnd);
    const auto rest = input.substr(std::min(lineEnd + 1, input.size()));

    for (const auto& credentials :
         {openCredentialBlock(rest, key), readCredentials(toBytes(rest))}) {
        require(!credentials || credentials->is_object());
    }
    if (const auto decoded = base64Decode(rest)) {
        require(decoded->size() <= rest.size());
        const auto opened = decryptAes256Ecb(*decoded, key, LongKey::cut);
        require(opened.has_value() == (decoded->size() % 16 == 0));
    }
    constexpr std::array<std::byte, 16> iv{};
    const auto sealed = encryptAes256Cbc(toBytes(rest), key, LongKey::dropped, iv);
    require(sealed && base64Decode(base64Encode(*sealed)) == sealed);
    require(decryptAes256Cbc(*sealed, key, LongKey::dropped, iv) == toBytes(rest));
    return 0;
}
