#pragma once

#include <string>

namespace supportsdk {

/// Opens the rating screen after a chat. Main thread.
class ChatRating {
 public:
    virtual ~ChatRating() = default;

    /// A chat has ended whose issue, Support's `rateableIssueId`, may be rated.
    virtual void displayRatingScreen() = 0;
};

/// What a chat asks of video calls. `room` and `token` come from the service and admit to a call.
/// Main thread.
class ChatCalls {
 public:
    virtual ~ChatCalls() = default;

    virtual void startVideoChat(const std::string& room, const std::string& token) = 0;
    /// Shares the host application's own screen.
    virtual void startAppScreenSharing(const std::string& room, const std::string& token) = 0;
    /// Ends a call that is under way.
    virtual void stopVideoSession() = 0;
};

}  // namespace supportsdk
