#include "supportsdk/chat/xmpp/Stanzas.h"

namespace supportsdk {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

/// The length of the UTF-8 sequence (RFC 3629) at the head of `text`; 0 when there is none. Puts
/// the character into `character`.
std::size_t decode(std::string_view text, char32_t& character) {
    const auto byte = [text](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const unsigned first = byte(0);
    const std::size_t length = first < 0x80   ? 1
                               : first < 0xC2 ? 0
                               : first < 0xE0 ? 2
                               : first < 0xF0 ? 3
                               : first < 0xF5 ? 4
                                              : 0;
    if (length == 0 || text.size() < length) return 0;
    static constexpr unsigned headBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    character = first & headBits[length];
    for (std::size_t at = 1; at < length; ++at) {
        if ((byte(at) & 0xC0U) != 0x80U) return 0;
        character = (character << 6U) | (byte(at) & 0x3FU);
    }
    static constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
    return character < smallest[length] || character > 0x10FFFF || surrogate ? 0 : length;
}

}  // namespace

std::string cleanText(std::string_view text) {
    std::string clean;
    clean.reserve(text.size());
    while (!text.empty()) {
        char32_t character = 0;
        const auto length = decode(text, character);
        const bool control =
            character < 0x20 && character != '\t' && character != '\n' && character != '\r';
        if (length == 0 || character == 0xFFFE || character == 0xFFFF) {
            clean += replacement;
        } else if (!control) {
            clean += text.substr(0, length);
        }
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return clean;
}

}  // namespace supportsdk
