#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/core/Support.h"
#include "supportsdk/theme/Appearance.h"

namespace supportsdk {

namespace {

/// Of the JPEG that a chosen picture travels as.
constexpr double attachmentQuality = 0.5;

}  // namespace

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

void Support::chatFilePut(const std::string& commId, ImagePtr image, RestCallback success,
                          RestCallback failure) {
    auto completion = strictly(std::move(success), failure);
    auto send = [weak = weak_from_this(), commId, completion = std::move(completion),
                 failure = std::move(failure)](const std::optional<Bytes>& jpeg) {
        const auto self = weak.lock();
        if (!self) return;
        if (!jpeg) {
            if (failure) failure({{"status", 0}, {"message", "The picture cannot be read."}});
            return;
        }
        self->executePost("/chat/filePut/" + commId, self->endpoint, *jpeg,
                          {{"members_users_id", self->identity.membersUsersId.json()},
                           {"file_tag", "attachment"}},
                          completion);
    };
    platform->backgroundQueue->post([image = std::move(image), send = std::move(send),
                                     codec = platform->images,
                                     queue = platform->mainQueue]() mutable {
        auto jpeg = image ? codec->encodeJpeg(*image, attachmentQuality) : std::nullopt;
        queue->post([jpeg = std::move(jpeg), send = std::move(send)] { send(jpeg); });
    });
}

}  // namespace supportsdk
