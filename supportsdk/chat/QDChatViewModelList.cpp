#include <algorithm>

#include "supportsdk/chat/QDChatButtonCollectionView.h"
#include "supportsdk/chat/QDChatCollectionView.h"
#include "supportsdk/chat/QDChatViewModel.h"
#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/chat/QuorrandChatMessage.h"

// The lines as a list shows them: what stands where, and how large it is.

namespace supportsdk {

namespace {

constexpr double nameHeight = 25;
constexpr double attachmentMargin = 5;
constexpr double attachmentToText = 20;
constexpr double bubbleMargins = 5 + 11;
constexpr double localSpacing = 20;
constexpr double remoteSpacing = 10;
constexpr double buttonsMargin = 20;

}  // namespace

void QDChatViewModel::setupCollectionView(QDChatCollectionView& list) {
    list.dataSource = weak_from_this();
    for (const auto& identifier :
         {headerCellIdentifier, typingCellIdentifier, messageCellIdentifier})
        list.registerClass(identifier);
}

std::size_t QDChatViewModel::numberOfSectionsInCollectionView() const {
    const auto engine = engine_.lock();
    const bool isTyping = engine && engine->typingType != 0;
    return messageGroups().size() + (isTyping ? 1 : 0);
}

std::size_t QDChatViewModel::numberOfItemsInSection(std::size_t section) const {
    if (section < messageGroups().size()) return messageGroups()[section].size() + 1;
    return section < numberOfSectionsInCollectionView() ? 1 : 0;
}

QDChatViewModel::Place QDChatViewModel::placeAt(const ChatIndexPath& path) const {
    if (path.item >= numberOfItemsInSection(path.section)) return Place::none;
    if (path.section == messageGroups().size()) return Place::typing;
    return path.item == 0 ? Place::header : Place::line;
}

const QDChatViewModel::Message& QDChatViewModel::lineAt(const ChatIndexPath& path) const {
    return messageGroups()[path.section][path.item - 1];
}

std::optional<ChatCell> QDChatViewModel::cellForItemAtIndexPath(const ChatIndexPath& path) const {
    switch (placeAt(path)) {
        case Place::typing:
            return QDChatTypingCollectionViewCell{engine_.lock()->typingType};
        case Place::header:
            return QDChatHeaderCollectionViewCell{messageGroups()[path.section].front()->date};
        case Place::line:
            return QDChatCollectionViewCell{lineAt(path), usernameOf(*lineAt(path))};
        case Place::none:
            break;
    }
    return std::nullopt;
}

ChatCellSize QDChatViewModel::sizeForItemAtIndexPath(const ChatIndexPath& path,
                                                     double listWidth) const {
    switch (placeAt(path)) {
        case Place::typing:
            return {listWidth, QDChatTypingCollectionViewCell::height};
        case Place::header:
            return {listWidth, QDChatHeaderCollectionViewCell::height};
        case Place::line: {
            auto& line = *lineAt(path);
            line.cellSize = {listWidth, heightOf(line)};
            return line.cellSize;
        }
        case Place::none:
            break;
    }
    return {};
}

double QDChatViewModel::heightOf(const QuorrandChatMessage& line) const {
    double height = line.isMe ? 0 : nameHeight;
    if (line.attachmentView) height += line.attachmentView->height + attachmentMargin;
    if (line.messageView) height += line.messageView->height;
    if (line.kbView) height += line.kbView->height;
    if (line.attachmentView && line.messageView) height += attachmentToText;
    height += bubbleMargins;
    if (const auto engine = engine_.lock()) height = std::max(height, engine->avatarSize);
    height += line.isMe ? localSpacing : remoteSpacing;
    if (const auto& buttons = line.chatButtonCollectionView)
        height += buttons->height + buttonsMargin;
    return height;
}

std::string QDChatViewModel::usernameOf(const QuorrandChatMessage& line) const {
    const auto engine = engine_.lock();
    const auto name = engine ? engine->getInfoType("name", line.from) : std::nullopt;
    return name && !name->empty() ? *name : line.fromName.value_or("");
}

}  // namespace supportsdk
