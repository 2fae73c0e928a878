#include "supportsdk/chat/QDConnectChat.h"
#include "supportsdk/core/DefaultsKeys.h"
#include "supportsdk/launcher/SupportButton.h"

namespace supportsdk {

void SupportButton::videoChatGet(const std::string& commId) {
    if (!support) return;
    support->chatGet(commId, afterDismissal(&SupportButton::callRoomFetched),
                     afterDismissal(&SupportButton::callRoomMissing));
}

void SupportButton::callRoomFetched(const Json& response) {
    const QDConnectChat chat(response);
    notifyRoom(chat.external_id, chat.accessToken);
    platform_->progress->showInfo(platform_->localizer->localized("Start screen share now"));
}

void SupportButton::callRoomMissing(const Json&) {
    platform_->progress->showError(platform_->localizer->localized("Unable to get comm info."));
}

void SupportButton::notifyRoom(const std::optional<std::string>& room,
                               const std::optional<std::string>& token) {
    const auto shared = platform_->userDefaults->suite(defaultsKey::broadcastSuite);
    const auto write = [&](const char* key, const std::optional<std::string>& text) {
        if (text) {
            shared->setValue(key, *text);
        } else {
            shared->remove(key);
        }
    };
    write(defaultsKey::broadcastRoomName, room);
    write(defaultsKey::broadcastToken, token);
    shared->flush();
}

}  // namespace supportsdk
