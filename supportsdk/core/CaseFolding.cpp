#include "supportsdk/core/CaseFolding.h"

#include <locale>
#include <stdexcept>

namespace supportsdk {

namespace {

/// Not the process's locale: in "C", which a host may well have, only A to Z have a lower case.
std::locale unicodeLocale() {
    try {
        return std::locale("C.UTF-8");
    } catch (const std::runtime_error&) {
        return std::locale::classic();
    }
}

const std::ctype<wchar_t>& unicodeCharacters() {
    static const std::locale locale = unicodeLocale();
    return std::use_facet<std::ctype<wchar_t>>(locale);
}

std::wstring decoded(std::string_view text) {
    std::wstring characters;
    characters.reserve(text.size());
    for (const char byte : text) {
        const auto bits = static_cast<unsigned char>(byte);
        if ((bits & 0xC0U) == 0x80U && !characters.empty()) {
            const auto soFar = static_cast<char32_t>(characters.back());
            characters.back() = static_cast<wchar_t>(((soFar << 6U) | (bits & 0x3FU)) & 0x1FFFFFU);
        } else {
            characters += static_cast<wchar_t>(bits < 0x80   ? bits
                                               : bits < 0xE0 ? bits & 0x1FU
                                               : bits < 0xF0 ? bits & 0x0FU
                                                             : bits & 0x07U);
        }
    }
    return characters;
}

}  // namespace

std::wstring caseFolded(std::string_view text) {
    auto characters = decoded(text);
    unicodeCharacters().tolower(characters.data(), characters.data() + characters.size());
    return characters;
}

bool isWordCharacter(wchar_t character) {
    const bool isMark = character >= 0x300 && character <= 0x36F;
    const bool isJoiner = character == 0x200C || character == 0x200D;
    return character == L'_' || isMark || isJoiner ||
           unicodeCharacters().is(std::ctype_base::alnum, character);
}

}  // namespace supportsdk
