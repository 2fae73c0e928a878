#include "supportsdk/chat/ChatDates.h"

#include <algorithm>
#include <array>
#include <chrono>

namespace supportsdk {

namespace {

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

/// Whether `text` has digits exactly where `mask` has zeros, and else the same characters.
bool fits(std::string_view text, std::string_view mask) {
    return std::equal(text.begin(), text.end(), mask.begin(), mask.end(), [](char has, char wants) {
        return wants == '0' ? isDigit(has) : has == wants;
    });
}

int number(std::string_view text, std::size_t position, std::size_t digits) {
    int value = 0;
    for (const char digit : text.substr(position, digits)) value = value * 10 + (digit - '0');
    return value;
}

}  // namespace

Clock::Time truncatedToMinute(const Clock& clock, Clock::Time date) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(date);
    return seconds - std::chrono::seconds{clock.local(seconds).tm_sec};
}

std::string dateText(const Clock& clock, Clock::Time date) {
    const auto parts = clock.local(date);
    std::array<char, 64> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts)};
}

std::optional<Clock::Time> dateFromFullDateString(const Clock& clock, std::string_view text) {
    if (!fits(text, "0000-00-00 00:00:00.000")) return std::nullopt;
    std::tm parts{};
    parts.tm_year = number(text, 0, 4) - 1900;
    parts.tm_mon = number(text, 5, 2) - 1;
    parts.tm_mday = number(text, 8, 2);
    parts.tm_hour = number(text, 11, 2);
    parts.tm_min = number(text, 14, 2);
    parts.tm_sec = number(text, 17, 2);
    const std::chrono::year_month_day date{
        std::chrono::year{parts.tm_year + 1900},
        std::chrono::month{static_cast<unsigned>(parts.tm_mon + 1)},
        std::chrono::day{static_cast<unsigned>(parts.tm_mday)}};
    const bool isDate = date.ok() && parts.tm_year >= 0 && parts.tm_year < 300;
    if (!isDate || parts.tm_hour > 23 || parts.tm_min > 59 || parts.tm_sec > 59)
        return std::nullopt;
    return clock.fromLocal(parts) + std::chrono::milliseconds{number(text, 20, 3)};
}

}  // namespace supportsdk
