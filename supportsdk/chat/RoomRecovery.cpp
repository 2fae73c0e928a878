#include "supportsdk/chat/RoomRecovery.h"

#include <utility>

#include "supportsdk/chat/QuorrandChatMessage.h"
#include "supportsdk/chat/xmpp/DelayedDelivery.h"

namespace supportsdk {

void RoomRecovery::roomWasLost(ChatPlace place, Lines lines) {
    forget();
    place_ = std::move(place);
    lines_ = std::move(lines);
}

void RoomRecovery::roomWasJoined(const ChatPlace& place) {
    if (place_ != place) forget();
    place_ = place;
    replaying_ = true;
    hadLines_ = !lines_.empty();
    replayed_ = 0;
    known_ = 0;
}

RoomRecovery::Lines RoomRecovery::takeLines() {
    return std::exchange(lines_, {});
}

void RoomRecovery::didReplay(bool known) {
    ++replayed_;
    if (known) ++known_;
}

bool RoomRecovery::endReplay() {
    replaying_ = false;
    return !hadLines_ || replayed_ == 0 || known_ > 0;
}

bool endsHistory(const Stanza& message) {
    const bool isSubject = message.child("subject") && !message.child("body");
    return isSubject || !delayedDeliveryDate(message);
}

}  // namespace supportsdk
