#include <utility>

#include "supportsdk/chat/ChatUpload.h"
#include "supportsdk/chat/ChatViewController.h"

namespace supportsdk {

void ChatViewController::attach() {
    checkRoomStatus();
    if (!engine().isRoomJoined() || !ownsConversation()) {
        return warn(
            localized("You have not yet joined the chat room. You may want to try again in "
                      "a moment."));
    }
    if (const auto picture = view.lock()) picture->endEditing();
    platform().photoChooser->choose({.hideClassificationOverlay = true},
                                    whileOpen([this](std::vector<PhotoItem> items) {
                                        if (items.empty()) return;
                                        showOwnStatus("Uploading...");
                                        enableSendButton(false);
                                        upload(std::move(items));
                                    }));
}

void ChatViewController::handleAttachment(const ImagePtr& image) {
    upload({{image, {}}});
}

void ChatViewController::upload(std::vector<PhotoItem> items) {
    if (!comm_id) return;
    const auto tellScreen = [weak = weak(this)](auto operation) {
        return [weak, operation] {
            if (const auto self = weak.lock()) operation(*self);
        };
    };
    ChatUpload::start(
        support, *comm_id, std::move(items),
        {[weak = weak(this)] {
             const auto self = weak.lock();
             return !self || self->issue;
         },
         tellScreen([](ChatViewController& screen) { screen.dismissOwnProgress(); }),
         tellScreen([](ChatViewController& screen) { screen.enableSendButton(true); })});
}

}  // namespace supportsdk
