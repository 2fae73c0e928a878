#include <iterator>
#include <utility>

#include "supportsdk/chat/ChatPhotos.h"
#include "supportsdk/chat/ChatViewController.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk {

void ChatViewController::attach() {
    checkRoomStatus();
    if (!engine().isRoomJoined()) {
        return warn(
            localized("You have not yet joined the chat room. You may want to try again in "
                      "a moment."));
    }
    if (const auto picture = view.lock()) picture->endEditing();
    platform().photoChooser->choose(
        {.hideClassificationOverlay = true}, whileOpen([this](std::vector<PhotoItem> items) {
            if (items.empty()) return;
            showOwnStatus("Uploading...");
            enableSendButton(false);
            uploadPhotos(
                {std::make_move_iterator(items.begin()), std::make_move_iterator(items.end())});
        }));
}

/// One after the other: the lines come in the order of the choice, and no more than one decoded
/// picture is in memory.
void ChatViewController::uploadPhotos(std::deque<PhotoItem> items) {
    if (items.empty()) return;
    auto item = std::move(items.front());
    items.pop_front();
    upload(std::move(item), [this, items = std::move(items)] {
        enableSendButton(true);
        uploadPhotos(items);
    });
}

void ChatViewController::handleAttachment(const ImagePtr& image) {
    upload({image, {}}, [] {});
}

void ChatViewController::upload(PhotoItem item, std::function<void()> done) {
    preparePhoto(platform(), std::move(item),
                 whileOpen([this, done = std::move(done)](const ImagePtr& photo) {
                     dismissOwnProgress();
                     put(photo, done);
                 }));
}

void ChatViewController::put(const ImagePtr& photo, const std::function<void()>& done) {
    if (!chatRecord || !chatRecord->comm_id) return done();
    support->chatFilePut(*chatRecord->comm_id, photo, whileOpen([this, done](const Json& response) {
        photoDidArrive(response);
        done();
    }),
                         whileOpen([this, done](const Json& response) {
                             uploadFailed(stringForKey(response, "message").value_or(""));
                             done();
                         }));
}

/// The service composes the line of the attachment, so that it knows every file that a room names.
void ChatViewController::photoDidArrive(const Json& response) {
    const auto& results = arrayForKey(response, "results");
    if (!results.empty()) sendLine(dumpJson(results.front()), true);
}

void ChatViewController::uploadFailed(const std::string& message) {
    alertWithTitle("Unable to upload attachment", message);
}

}  // namespace supportsdk
