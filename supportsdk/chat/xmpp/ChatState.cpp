#include "supportsdk/chat/xmpp/ChatState.h"

#include <array>
#include <utility>

#include "supportsdk/platform/Stanza.h"

namespace supportsdk {

ChatStates chatStates(const Stanza& message) {
    static constexpr std::array states{
        std::pair{"active", ChatState::active}, std::pair{"composing", ChatState::composing},
        std::pair{"paused", ChatState::paused}, std::pair{"inactive", ChatState::inactive},
        std::pair{"gone", ChatState::gone}};
    ChatStates present;
    for (const auto& [name, state] : states) {
        if (message.hasChild(name, "http://jabber.org/protocol/chatstates")) present.add(state);
    }
    return present;
}

}  // namespace supportsdk
