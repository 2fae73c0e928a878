#include "supportsdk/chat/ChatUpload.h"

#include <iterator>
#include <utility>

#include "supportsdk/chat/ChatPhotos.h"
#include "supportsdk/chat/QDChatViewController.h"
#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/core/Support.h"

namespace supportsdk {

void ChatUpload::start(const std::shared_ptr<Support>& support, const std::string& commId,
                       std::vector<PhotoItem> items, Screen screen) {
    std::shared_ptr<ChatUpload>(
        new ChatUpload(support, commId, std::move(items), std::move(screen)))
        ->next();
}

ChatUpload::ChatUpload(const std::shared_ptr<Support>& support, std::string commId,
                       std::vector<PhotoItem> items, Screen screen)
    : support_(support),
      commId_(std::move(commId)),
      items_(std::make_move_iterator(items.begin()), std::make_move_iterator(items.end())),
      screen_(std::move(screen)) {}

std::shared_ptr<Support> ChatUpload::wantedSupport() const {
    return screen_.isWanted() ? support_.lock() : nullptr;
}

void ChatUpload::next() {
    const auto support = wantedSupport();
    if (!support || items_.empty()) return;
    if (support->chat->commId != commId_) {
        // Another chat has been opened: the rest would find no room to be shown in.
        QDChatViewController::reportUnsent(*support->platform, ChatSend::offline);
        return;
    }
    auto item = std::move(items_.front());
    items_.pop_front();
    preparePhoto(*support->platform, std::move(item),
                 [self = shared_from_this()](const ImagePtr& photo) { self->put(photo); });
}

void ChatUpload::put(const ImagePtr& photo) {
    const auto support = wantedSupport();
    if (!support) return;
    screen_.didPrepare();
    const auto self = shared_from_this();
    support->chatFilePut(
        commId_, photo, [self](const Json& response) { self->photoDidArrive(response); },
        [self](const Json& response) { self->photoDidFail(response); });
}

/// The service composes the line of the attachment, so that it knows every file that a room names.
void ChatUpload::photoDidArrive(const Json& response) {
    const auto support = wantedSupport();
    if (!support) return;
    const auto& results = arrayForKey(response, "results");
    if (!results.empty()) {
        auto& chat = *support->chat;
        QDChatViewController::reportUnsent(
            *support->platform, chat.commId == commId_
                                    ? chat.sendGroupchatMessage(dumpJson(results.front()), true)
                                    : ChatSend::offline);
    }
    screen_.didFinish();
    next();
}

void ChatUpload::photoDidFail(const Json& response) {
    const auto support = wantedSupport();
    if (!support) return;
    QDChatViewController::alertWithTitle(*support->platform, "Unable to upload attachment",
                                         stringForKey(response, "message").value_or(""));
    screen_.didFinish();
    next();
}

}  // namespace supportsdk
