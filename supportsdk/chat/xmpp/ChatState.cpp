#include "supportsdk/chat/xmpp/ChatState.h"

#include <array>
#include <utility>

#include "supportsdk/platform/Stanza.h"

namespace supportsdk {

std::optional<ChatState> chatState(const Stanza& message) {
    static constexpr std::array states{
        std::pair{"active", ChatState::active}, std::pair{"composing", ChatState::composing},
        std::pair{"paused", ChatState::paused}, std::pair{"inactive", ChatState::inactive},
        std::pair{"gone", ChatState::gone}};
    for (const auto& [name, state] : states) {
        if (message.hasChild(name, "http://jabber.org/protocol/chatstates")) return state;
    }
    return std::nullopt;
}

}  // namespace supportsdk
