#include "supportsdk/core/DateFormat.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <ctime>

namespace supportsdk {

namespace {

struct Moment {
    std::tm parts;
    int milliseconds;
};

std::string withDigits(int number, std::size_t digits) {
    auto text = std::to_string(number);
    return std::string(digits - std::min(digits, text.size()), '0') + text;
}

std::string year(const Moment& moment, std::size_t count) {
    const int number = moment.parts.tm_year + 1900;
    return withDigits(count == 2 ? number % 100 : number, count);
}

/// Fractions are cut, not rounded, or a second would have a thousandth too many.
std::string fraction(const Moment& moment, std::size_t count) {
    auto text = withDigits(moment.milliseconds, 3);
    text.resize(count, '0');
    return text;
}

/// A field of the pattern; the letters themselves for what is none.
std::string field(char letter, std::size_t count, const Moment& moment) {
    const auto& parts = moment.parts;
    switch (letter) {
        case 'y':
            return year(moment, count);
        case 'M':
            return withDigits(parts.tm_mon + 1, count);
        case 'd':
            return withDigits(parts.tm_mday, count);
        case 'H':
            return withDigits(parts.tm_hour, count);
        case 'h':
            return withDigits((parts.tm_hour + 11) % 12 + 1, count);
        case 'm':
            return withDigits(parts.tm_min, count);
        case 's':
            return withDigits(parts.tm_sec, count);
        case 'S':
            return fraction(moment, count);
        case 'a':
            return parts.tm_hour < 12 ? "AM" : "PM";
        default:
            return std::string(count, letter);
    }
}

}  // namespace

std::string formattedDate(const Clock& clock, Clock::Time date, std::string_view pattern) {
    using std::chrono::milliseconds;
    const auto rest = date - std::chrono::floor<std::chrono::seconds>(date);
    const Moment moment{clock.local(date),
                        static_cast<int>(std::chrono::floor<milliseconds>(rest).count())};
    std::string text;
    bool isQuoted = false;
    for (std::size_t i = 0; i < pattern.size();) {
        const char letter = pattern[i];
        const auto end = std::min(pattern.find_first_not_of(letter, i), pattern.size());
        const auto count = end - i;
        i = end;
        if (letter == '\'') {
            text.append(count / 2, letter);
            isQuoted ^= count % 2 == 1;
        } else if (isQuoted) {
            text.append(count, letter);
        } else {
            text += field(letter, count, moment);
        }
    }
    return text;
}

}  // namespace supportsdk
