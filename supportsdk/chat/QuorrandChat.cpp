#include "supportsdk/chat/QuorrandChat.h"

#include "supportsdk/chat/ChatPictures.h"
#include "supportsdk/chat/NetworkWatch.h"
#include "supportsdk/chat/xmpp/XmppLink.h"
#include "supportsdk/chat/xmpp/XmppRoom.h"
#include "supportsdk/core/ImageLoader.h"

namespace supportsdk {

std::shared_ptr<QuorrandChat> QuorrandChat::sharedInstance(const PlatformPtr& platform) {
    static std::weak_ptr<QuorrandChat> shared;
    auto living = shared.lock();
    if (!living) {
        living = create(platform);
        shared = living;
    }
    return living;
}

std::shared_ptr<QuorrandChat> QuorrandChat::create(PlatformPtr platform) {
    std::shared_ptr<QuorrandChat> chat(new QuorrandChat(std::move(platform)));
    chat->viewModel = chat->makeViewModel();
    return chat;
}

std::shared_ptr<QDChatViewModel> QuorrandChat::makeViewModel() {
    // Weak, because a screen may hold the list longer than anybody holds the engine.
    return std::make_shared<QDChatViewModel>(weak_from_this());
}

QuorrandChat::QuorrandChat(PlatformPtr givenPlatform)
    : platform(std::move(givenPlatform)),
      defaults(platform->userDefaults->standard()),
      imageLoader_(std::make_unique<ImageLoader>(platform)),
      pictures_(std::make_unique<ChatPictures>()) {
    loadEmoticons();
    setDefaults();
}

QuorrandChat::~QuorrandChat() {
    retire(std::move(link_));
    retire(std::move(closingLink_));
}

}  // namespace supportsdk
