#include "supportsdk/chat/ChatViewController.h"

namespace supportsdk {

void ChatViewController::joinVideoChat(const std::string& room) {
    const auto choice = [this, &room](const char* label, bool sharesScreen,
                                      bool sharesDevice) -> AlertAction {
        return {localized(label), ActionStyle::plain,
                [weak = weak(this), room, sharesScreen, sharesDevice](const auto&) {
                    const auto self = weak.lock();
                    if (!self) return;
                    self->showStatus("Joining call");
                    self->isScreenShare = sharesScreen;
                    if (sharesDevice) self->isSharingEntireDevice = true;
                    self->videoChatGet(room);
                }};
    };
    platform().presenter->showAlert({hostName(),
                                     localized("What would you like to do?"),
                                     {},
                                     {choice("Share Screen", true, false),
                                      choice("All Device Screens", true, true),
                                      choice("Video Chat", false, false),
                                      {localized("Cancel"), ActionStyle::cancel, {}}}});
}

void ChatViewController::videoChatGet(const std::string& room) {
    const auto progress = platform().progress;
    support->chatGet(
        room,
        [weak = weak(this), progress](const Json& response) {
            progress->dismiss();
            const auto self = weak.lock();
            if (!self) return;
            const QDConnectChat call(response);
            const auto name = call.external_id.value_or("");
            const auto token = call.accessToken.value_or("");
            if (!self->isScreenShare) {
                self->startVideoChatWithRoom(name, token);
            } else if (self->isSharingEntireDevice) {
                self->startDeviceScreenSharingWithRoom(name, token);
            } else {
                self->startAppScreenSharingWithRoom(name, token);
            }
        },
        [weak = weak(this), progress](const Json&) {
            progress->dismiss();
            if (const auto self = weak.lock())
                progress->showError(self->localized("Unable to join call."));
        });
}

void ChatViewController::startVideoChatWithRoom(const std::string& room, const std::string& token) {
    if (const auto companion = calls.lock()) companion->startVideoChat(room, token);
}

void ChatViewController::startAppScreenSharingWithRoom(const std::string& room,
                                                       const std::string& token) {
    if (const auto companion = calls.lock()) companion->startAppScreenSharing(room, token);
}

void ChatViewController::startDeviceScreenSharingWithRoom(const std::string& room,
                                                          const std::string& token) {
    const auto shared = platform().userDefaults->suite("group.com.goquorrand.BroadcastExtension");
    shared->setValue("roomName", room);
    shared->setValue("token", token);
    shared->flush();
    showStatus("Start screen broadcast to Support SDK from control panel.");
}

}  // namespace supportsdk
