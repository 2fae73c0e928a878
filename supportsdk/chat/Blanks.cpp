#include "supportsdk/chat/Blanks.h"

#include <algorithm>
#include <array>
#include <span>

namespace supportsdk {

namespace {

using Blanks = std::span<const std::string_view>;

constexpr std::size_t numberOfLineEnds = 7;

/// Line ends first.
constexpr std::array<std::string_view, 25> blanksAndLineEnds{
    "\n",           "\v",           "\f",           "\r",
    "\xC2\x85",     "\xE2\x80\xA8", "\xE2\x80\xA9", " ",
    "\t",           "\xC2\xA0",     "\xE1\x9A\x80", "\xE2\x80\x80",
    "\xE2\x80\x81", "\xE2\x80\x82", "\xE2\x80\x83", "\xE2\x80\x84",
    "\xE2\x80\x85", "\xE2\x80\x86", "\xE2\x80\x87", "\xE2\x80\x88",
    "\xE2\x80\x89", "\xE2\x80\x8A", "\xE2\x80\xAF", "\xE2\x81\x9F",
    "\xE3\x80\x80"};

std::string_view trimmed(std::string_view text, Blanks blanks) {
    const auto isSpecial = [](char byte) {
        return static_cast<unsigned char>(byte) <= ' ' || static_cast<unsigned char>(byte) >= 0x80;
    };
    const auto find = [blanks](auto matches) {
        return std::find_if(blanks.begin(), blanks.end(), matches);
    };
    while (!text.empty() && isSpecial(text.front())) {
        const auto blank = find([text](auto wanted) { return text.starts_with(wanted); });
        if (blank == blanks.end()) break;
        text.remove_prefix(blank->size());
    }
    while (!text.empty() && isSpecial(text.back())) {
        const auto blank = find([text](auto wanted) { return text.ends_with(wanted); });
        if (blank == blanks.end()) break;
        text.remove_suffix(blank->size());
    }
    return text;
}

}  // namespace

std::string_view withoutOuterBlanks(std::string_view text) {
    return trimmed(text, Blanks(blanksAndLineEnds).subspan(numberOfLineEnds));
}

std::string_view withoutOuterBlanksAndLineEnds(std::string_view text) {
    return trimmed(text, blanksAndLineEnds);
}

}  // namespace supportsdk
