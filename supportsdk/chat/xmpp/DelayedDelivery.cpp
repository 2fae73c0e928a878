#include "supportsdk/chat/xmpp/DelayedDelivery.h"

#include <chrono>

namespace supportsdk {

namespace {

/// Reads its way through a text; the first thing that does not fit spoils the whole.
class Reader {
 public:
    explicit Reader(std::string_view text) : rest_(text) {}

    bool accept(char wanted) {
        if (rest_.empty() || rest_.front() != wanted) return false;
        rest_.remove_prefix(1);
        return true;
    }
    void expect(char wanted) {
        if (!accept(wanted)) good_ = false;
    }
    int number(int digits) {
        int value = 0;
        while (digits-- > 0) value = value * 10 + digit();
        return value;
    }
    std::chrono::microseconds fraction() {
        std::chrono::microseconds value{0};
        std::chrono::microseconds unit{100'000};
        do {
            value += digit() * unit;
            unit /= 10;
        } while (good_ && atDigit());
        return value;
    }
    [[nodiscard]] bool finished() const { return good_ && rest_.empty(); }

 private:
    [[nodiscard]] bool atDigit() const {
        return !rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9';
    }
    int digit() {
        if (!atDigit()) {
            good_ = false;
            return 0;
        }
        const int value = rest_.front() - '0';
        rest_.remove_prefix(1);
        return value;
    }

    std::string_view rest_;
    bool good_ = true;
};

std::chrono::minutes readZone(Reader& reader, bool legacy) {
    if (reader.accept('Z') || legacy) return {};
    const bool ahead = reader.accept('+');
    if (!ahead) reader.expect('-');
    const std::chrono::hours hours{reader.number(2)};
    reader.expect(':');
    const auto offset = hours + std::chrono::minutes{reader.number(2)};
    return ahead ? offset : -offset;
}

}  // namespace

std::optional<Clock::Time> parseXmppDateTime(std::string_view text) {
    using namespace std::chrono;
    Reader reader(text);
    const int wholeYear = reader.number(4);
    const bool legacy = !reader.accept('-');
    const auto wholeMonth = static_cast<unsigned>(reader.number(2));
    if (!legacy) reader.expect('-');
    const year_month_day date{year{wholeYear}, month{wholeMonth},
                              day{static_cast<unsigned>(reader.number(2))}};
    reader.expect('T');
    const hours hour{reader.number(2)};
    reader.expect(':');
    const minutes minute{reader.number(2)};
    reader.expect(':');
    const seconds second{reader.number(2)};
    const auto part = reader.accept('.') ? reader.fraction() : microseconds{0};
    const auto zone = readZone(reader, legacy);
    // The clock counts nanoseconds, which hold no other years; 60 is a leap second.
    const bool possible = wholeYear > 1677 && wholeYear < 2262 && date.ok() && hour < hours{24} &&
                          minute < minutes{60} && second <= seconds{60} && abs(zone) < hours{24};
    if (!reader.finished() || !possible) return std::nullopt;
    return Clock::Time(sys_days(date).time_since_epoch() + hour + minute + second + part - zone);
}

std::optional<Clock::Time> delayedDeliveryDate(const Stanza& message) {
    for (const auto& stamp : {message.childAttribute("delay", "urn:xmpp:delay", "stamp"),
                              message.childAttribute("x", "jabber:x:delay", "stamp")}) {
        if (const auto date = parseXmppDateTime(stamp.value_or(""))) return date;
    }
    return std::nullopt;
}

}  // namespace supportsdk
