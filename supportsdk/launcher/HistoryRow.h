#pragma once

#include <optional>
#include <string>

#include "supportsdk/core/QDIssue.h"
#include "supportsdk/platform/Images.h"
#include "supportsdk/platform/Platform.h"

namespace supportsdk {

/// What a row of the history shows of an issue, translated; "" for what is unknown.
struct HistoryRow {
    std::string chatId;
    /// The day on which the issue was created, or resolved when it is no longer open, in the
    /// device's time zone.
    std::string date;
    std::string status;
    /// Only of a rated issue that is no longer open.
    std::string rating;
    /// The latest line of an open issue's chat, with who wrote it.
    std::string latestMessage;
    /// Address of the agent's picture, unchecked.
    std::optional<std::string> avatar;
    /// That picture, or what stands for it; null when the kit has none. historyRow() leaves it
    /// empty.
    ImagePtr avatarImage;
    /// It is that picture.
    bool isAvatarLoaded = false;
};

/// The moment of an issue's field, such as "2026-01-31 12:00:30" in the device's time zone.
std::optional<Clock::Time> dateFromIssue(const Clock& clock,
                                         const std::optional<std::string>& text);

SUPPORTSDK_API HistoryRow historyRow(const QDIssue& issue, const Platform& platform);

}  // namespace supportsdk
