#include "supportsdk/chat/ChatViewController.h"
#include "supportsdk/core/EventNames.h"
#include "supportsdk/core/NotificationCenter.h"

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

void ChatViewController::selectChatTypeWithInfo(const Json& /*info*/) {
    const auto choice = [this](const char* label, auto share) -> AlertAction {
        return {localized(label), ActionStyle::plain, [weak = weak(this), share](const auto&) {
                    const auto self = weak.lock();
                    if (!self || !self->chatRecord) return;
                    ((*self).*share)(self->chatRecord->external_id.value_or(""),
                                     self->chatRecord->accessToken.value_or(""));
                }};
    };
    platform().presenter->showAlert(
        {hostName(),
         localized("What do you want to share?"),
         {},
         {choice("Application Screen", &ChatViewController::startAppScreenSharingWithRoom),
          choice("All Device Screens", &ChatViewController::startDeviceScreenSharingWithRoom),
          {localized("Cancel"), ActionStyle::cancel, {}}}});
}

void ChatViewController::confirmConnectLaunch() {
    const auto accept = [weak = weak(this)](const auto&) {
        if (const auto self = weak.lock()) self->follow();
    };
    platform().presenter->showAlert(
        {hostName(),
         localized("This will launch Connect to allow you to join the video chat."),
         {},
         {{localized("OK"), ActionStyle::plain, accept},
          {localized("Cancel"), ActionStyle::cancel, {}}}});
}

void ChatViewController::follow() {
    if (!issue || !issue->id) return;
    platform().urlOpener->open("goquorrandconnect://prod/member/issue/read?issue_id=" + *issue->id,
                               [](bool) {});
}

void ChatViewController::notifyRoom(const std::string& room, const std::string& token) {
    NotificationCenter::shared().post(notification::roomInformation, {},
                                      Json{{"room", room}, {"token", token}});
}

}  // namespace supportsdk
