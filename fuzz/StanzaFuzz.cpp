#include <algorithm>
#include <memory>
#include <string>

#include "fuzz/Fuzzing.h"
#include "supportsdk/chat/xmpp/ChatState.h"
#include "supportsdk/chat/xmpp/DelayedDelivery.h"
#include "supportsdk/chat/xmpp/Roster.h"
#include "supportsdk/chat/xmpp/Stanzas.h"
#include "supportsdk/chat/xmpp/XmppPing.h"
#include "supportsdk/chat/xmpp/XmppRoom.h"

using namespace supportsdk;
using fuzz::require;

namespace {

class SilentLog : public Log {
 public:
    void write(std::string_view) override {}
};

/// What the kit writes must be a stanza again.
void send(const std::string& xml) {
    require(Stanza::parse(xml) != nullptr);
}

void read(const Stanza& stanza) {
    (void)chatStates(stanza);
    (void)delayedDeliveryDate(stanza);
    (void)rosterItems(stanza);
    (void)errorCondition(stanza);
    (void)stanza.childText("body");
    XmppPing(send).receive(stanza);
}

std::shared_ptr<XmppRoom> makeRoom() {
    const auto room = std::make_shared<std::weak_ptr<XmppRoom>>();
    XmppRoom::Callbacks callbacks;
    callbacks.joined = [room] { require(room->lock()->isJoined()); };
    callbacks.joinRefused = [room](const Stanza&) { require(!room->lock()->isJoined()); };
    callbacks.left = [room](bool) { require(!room->lock()->isJoined()); };
    callbacks.messageRefused = [](const Stanza& error) { (void)errorCondition(error); };
    callbacks.message = [](const std::shared_ptr<const Stanza>& message) { read(*message); };
    callbacks.configurationForm = [room](const Stanza& form) {
        if (const auto filled = makePersistentRoomForm(form))
            room->lock()->configureRoomUsingOptions(*filled);
    };
    const auto made = std::make_shared<XmppRoom>("room@chat.test", send,
                                                 std::make_shared<SilentLog>(), callbacks);
    *room = made;
    return made;
}

}  // namespace

/// Each line of the input is a stanza from the server of one room that is being entered.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    const auto room = makeRoom();
    room->joinRoomUsingNickname("guest", makeHistory());
    while (!rest.empty()) {
        const auto line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        const std::shared_ptr<const Stanza> stanza = Stanza::parse(line);
        if (!stanza) continue;
        read(*stanza);
        room->receive(stanza);
        send(makeError(*stanza, "service-unavailable")->xml());
        send(makeResult(*stanza)->xml());
    }
    room->leaveRoom();
    return 0;
}
