#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/core/Support.h"
#include "supportsdk/theme/Appearance.h"

namespace supportsdk {

void Support::attachChat() {
    chat = QuorrandChat::sharedInstance(platform);
    appearance->setChatImageReceiver(chat);
}

void Support::shareHeadersWithChat() {
    if (chat) chat->setHttpHeaders(headers);
}

void Support::chatGet(const std::string& commId, RestCallback success, RestCallback failure) {
    executePost("/chat/get/" + commId, endpoint,
                {{"members_users_id", identity.membersUsersId.json()}},
                strictly(std::move(success), std::move(failure)));
}

void Support::chatPut(RestCallback success, RestCallback failure) {
    executePost("/chat/put", endpoint, {{"members_users_id", identity.membersUsersId.json()}},
                strictly(std::move(success), std::move(failure)));
}

void Support::chatEnter(const std::string& commId, RestCallback success, RestCallback failure) {
    executePost("/chat/enter/" + commId, endpoint,
                {{"members_users_id", identity.membersUsersId.json()}},
                strictly(std::move(success), std::move(failure)));
}

void Support::chatExit(const std::string& commId, const Json& durationStart,
                       const Json& durationAdd, RestCallback success, RestCallback failure) {
    executePost("/chat/exit/" + commId, endpoint,
                {{"members_users_id", identity.membersUsersId.json()},
                 {"duration_start", durationStart},
                 {"duration_add", durationAdd}},
                strictly(std::move(success), std::move(failure)));
}

void Support::chatFilePut(const std::string& commId, std::span<const std::byte> image,
                          RestCallback success, RestCallback failure) {
    executePost("/chat/filePut/" + commId, endpoint, image,
                {{"members_users_id", identity.membersUsersId.json()}, {"file_tag", "attachment"}},
                strictly(std::move(success), std::move(failure)));
}

}  // namespace supportsdk
