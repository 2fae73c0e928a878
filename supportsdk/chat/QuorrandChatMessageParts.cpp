#include <algorithm>

#include "supportsdk/chat/ChatPictures.h"
#include "supportsdk/chat/QDChatActionButton.h"
#include "supportsdk/chat/QDChatButtonCollectionView.h"
#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/chat/QuorrandChatMessage.h"
#include "supportsdk/core/LowerCased.h"
#include "supportsdk/core/ReplaceAll.h"
#include "supportsdk/core/Url.h"

// What a line is drawn with: pictures, styled text, buttons.

namespace supportsdk {

namespace {

struct AvatarName {
    std::string kind;
    std::string identifier;
};

/// Senders are "kind:number" and more behind a ";", but for the relay, which is one of a kind.
std::optional<AvatarName> avatarName(const std::string& sender) {
    const auto key = sender.substr(0, sender.find(';'));
    const auto colon = key.find(':');
    if (colon == std::string::npos)
        return lowerCased(key) == "relay" ? std::optional(AvatarName{"relay", "id"}) : std::nullopt;
    if (key.find(':', colon + 1) != std::string::npos) return std::nullopt;
    AvatarName name{key.substr(0, colon), key.substr(colon + 1)};
    // Encoded or not, they mean another folder (RFC 3986, 5.2.4).
    const auto isDotSegment = [](const std::string& piece) {
        return piece == "." || piece == "..";
    };
    if (isDotSegment(name.kind) || isDotSegment(name.identifier)) return std::nullopt;
    return name;
}

}  // namespace

void QuorrandChatMessage::getAvatarForSender(const std::string& sender) {
    const auto chat = chat_.lock();
    if (!chat) return;
    const auto known = chat->avatars.find(sender);
    if (known != chat->avatars.end()) avatarImage = known->second;
    const auto name = avatarName(sender);
    if (!name) return;
    // Nicknames are anybody's choice and must not lead to another address of the service.
    getAvatarWithUrl(chat->avatarRetrievalAPIBaseURL + "/api/v1/avatar/" +
                     percentEncoded(name->kind) + "/" + percentEncoded(name->identifier) +
                     "/50,50");
}

void QuorrandChatMessage::getAvatarWithUrl(const std::optional<std::string>& address) {
    const auto chat = chat_.lock();
    if (!chat) return;
    avatarImage = chat->pictures().avatarPlaceholder(*chat);
    if (address && !address->empty())
        chat->pictures().loadAvatar(*chat, *address, shared_from_this());
}

void QuorrandChatMessage::getPreviewImage() {
    const auto chat = chat_.lock();
    if (!chat || !preview) return;
    previewImage = chat->pictures().missingPreview(*chat);
    if (!preview->empty()) chat->pictures().loadPreview(*chat, *preview, shared_from_this());
}

bool QuorrandChatMessage::isAvatarLoaded() const {
    const auto chat = chat_.lock();
    return avatarImage && chat && avatarImage != chat->pictures().avatarPlaceholder(*chat);
}

bool QuorrandChatMessage::isPreviewLoaded() const {
    const auto chat = chat_.lock();
    return hasPreview() && chat && previewImage != chat->pictures().missingPreview(*chat);
}

void QuorrandChatMessage::chooseTextColor() {
    const auto chat = chat_.lock();
    if (!chat) return;
    textColor_ = isMe ? chat->appearance.localTextColor : chat->appearance.remoteTextColor;
}

const StyledText& QuorrandChatMessage::attributedString() const {
    if (!attributedString_) attributedString_ = std::make_unique<const StyledText>(styledText());
    return *attributedString_;
}

std::optional<std::string> QuorrandChatMessage::message() const {
    if (!textColor_ || !text) return std::nullopt;
    return attributedString_ ? attributedString_->plainText() : text;
}

StyledText QuorrandChatMessage::styledText() const {
    if (!text) return {};
    const auto chat = chat_.lock();
    if (!chat) return {{*text}, textColor_.value_or(Color{})};
    const bool isComplete = textColor_.has_value();
    if (!isComplete && messageType == ChatMessageType::Attachment) return {};
    if (!isComplete && messageType == ChatMessageType::KnowledgeBase) {
        constexpr std::string_view lineEnds = "\n\n";
        const auto withoutParagraphs = replaceAll(lowerCased(*text), "<p>", lineEnds);
        return attributedStringFromChatMessage(*chat,
                                               replaceAll(withoutParagraphs, "<br>", lineEnds));
    }
    const auto& look = chat->appearance;
    auto styled = attributedStringFromChatMessage(*chat, *text);
    styled.color = textColor_.value_or(isMe ? look.localTextColor : look.remoteTextColor);
    return styled;
}

void QuorrandChatMessage::prepareChatButtons() {
    const auto chat = chat_.lock();
    if (!chat || !buttonActions || buttonActions->empty()) return;
    double tallest = 0;
    for (const auto& action : *buttonActions) {
        auto button = std::make_shared<QDChatActionButton>(chat, action);
        button->handleButtonAction = [weakMessage = weak_from_this(), weakChat = chat_](
                                         const std::string& label,
                                         const std::optional<std::string>& address) {
            const auto message = weakMessage.lock();
            const auto engine = weakChat.lock();
            const auto listener = engine ? engine->delegate.lock() : nullptr;
            if (message && listener) listener->handleButtonAction(address, label, message);
        };
        tallest = std::max(tallest, button->size.height);
        chatActionButtons.push_back(std::move(button));
    }
    const auto height = static_cast<double>(chatActionButtons.size()) * tallest;
    chatButtonCollectionView = std::make_shared<QDChatButtonCollectionView>(height);
    chatButtonCollectionView->buttons = chatActionButtons;
    chatButtonCollectionView->reload();
    chatButtonCollectionView->parentDelegate = chat->delegate;
    chatButtonCollectionView->startObserving();
}

void QuorrandChatMessage::disableChatActionButtons() {
    for (const auto& button : chatActionButtons) button->isEnabled = false;
}

}  // namespace supportsdk
