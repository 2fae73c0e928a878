#include "supportsdk/launcher/HistoryRow.h"

#include <array>
#include <cstdio>

#include "supportsdk/chat/ChatDates.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk {

namespace {

constexpr std::array months{"January", "February", "March",     "April",   "May",      "June",
                            "July",    "August",   "September", "October", "November", "December"};

/// "January 31, 2026"
std::string dayText(const Platform& platform, const std::optional<std::string>& date) {
    const auto moment = dateFromIssue(*platform.clock, date);
    if (!moment) return "";
    const auto parts = platform.clock->local(*moment);
    std::array<char, 32> dayAndYear{};
    std::snprintf(dayAndYear.data(), dayAndYear.size(), " %02d, %04d", parts.tm_mday,
                  parts.tm_year + 1900);
    const auto* month = months.at(static_cast<std::size_t>(parts.tm_mon));
    return platform.localizer->localized(month) + dayAndYear.data();
}

/// The lines of a transcript lie under their dates, whose order as texts is that of the dates.
const Json* latestLine(const Json& transcript, const Clock& clock) {
    if (!transcript.is_object()) return nullptr;
    for (auto line = transcript.rbegin(); line != transcript.rend(); ++line) {
        if (dateFromFullDateString(clock, line.key())) return &line.value();
    }
    return nullptr;
}

std::string latestMessage(const QDIssue& issue, const Clock& clock) {
    if (!issue.isOpen() || !issue.transcripts || issue.transcripts->empty()) return "";
    const auto* line = latestLine(issue.transcripts->front(), clock);
    if (!line) return "";
    const auto from = stringForKey(*line, "from");
    const auto message = stringForKey(*line, "message");
    return from && message ? *from + ": " + *message : "";
}

}  // namespace

std::optional<Clock::Time> dateFromIssue(const Clock& clock,
                                         const std::optional<std::string>& text) {
    return text ? dateFromFullDateString(clock, *text + ".000") : std::nullopt;
}

HistoryRow historyRow(const QDIssue& issue, const Platform& platform) {
    const auto labelled = [&platform](const char* label, const std::string& text) {
        return platform.localizer->localized(label) + ": " + text;
    };
    HistoryRow row;
    row.chatId = labelled("Chat ID", issue.reference_num.value_or(""));
    row.date = dayText(platform, issue.isOpen() ? issue.created : issue.resolved);
    row.status = labelled("Status", issue.displayStatus(*platform.localizer));
    if (issue.isRated && !issue.isOpen()) {
        row.rating = labelled("Rating", std::to_string(issue.rating.value_or(0)));
    }
    row.latestMessage = latestMessage(issue, *platform.clock);
    row.avatar = issue.owner_user_avatar;
    return row;
}

}  // namespace supportsdk
