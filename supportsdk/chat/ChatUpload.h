#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "supportsdk/platform/Platform.h"

namespace supportsdk {

class Support;

/// Pictures on their way into a chat, one after the other: the lines come in the order of the
/// choice, and no more than one decoded picture is in memory. It needs no screen, because a person
/// may go back meanwhile; it ends with the kit, and with the chat. Main thread.
class ChatUpload : public std::enable_shared_from_this<ChatUpload> {
 public:
    /// What the screen has to do with it; all of them are there.
    struct Screen {
        /// False once the chat has ended.
        std::function<bool()> isWanted;
        /// A picture has been read; its upload begins.
        std::function<void()> didPrepare;
        /// A picture is in the room, or the person knows that it is not.
        std::function<void()> didFinish;
    };

    static void start(const std::shared_ptr<Support>& support, const std::string& commId,
                      std::vector<PhotoItem> items, Screen screen);

 private:
    ChatUpload(const std::shared_ptr<Support>& support, std::string commId,
               std::vector<PhotoItem> items, Screen screen);

    /// Null when there is nothing more to do.
    [[nodiscard]] std::shared_ptr<Support> wantedSupport() const;
    void next();
    void put(const ImagePtr& photo);
    void photoDidArrive(const Json& response);
    void photoDidFail(const Json& response);

    /// The kit's requests must not keep the kit.
    const std::weak_ptr<Support> support_;
    const std::string commId_;
    std::deque<PhotoItem> items_;
    const Screen screen_;
};

}  // namespace supportsdk
