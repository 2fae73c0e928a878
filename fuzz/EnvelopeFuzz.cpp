#include <string_view>
#include <variant>

#include "fuzz/Fuzzing.h"
#include "supportsdk/chat/ActionPermission.h"
#include "supportsdk/chat/ChatEnvelope.h"
#include "supportsdk/core/Fields.h"

using namespace supportsdk;
using fuzz::require;

namespace {

void check(const ChatEnvelope& envelope) {
    if (!envelope.actions) return;
    require(envelope.actions->is_array());
    for (const auto& action : *envelope.actions) {
        const auto* permissions = valueForKey(action, "perms");
        require(!permissions || !permissions->is_null() || isPermitted(permissions, std::nullopt));
        for (const Json& user : {Json(1), Json::array({"agent"}), *envelope.actions})
            (void)isPermitted(permissions, user);
    }
}

}  // namespace

/// The input is the body of a chat message.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto hidden = parseChatText(text, false);
    const auto shown = parseChatText(text, true);
    // Showing notifications adds lines, and changes nothing else.
    require(hidden.index() == shown.index() || (std::holds_alternative<InvalidChatText>(hidden) &&
                                                std::holds_alternative<ChatEnvelope>(shown)));
    if (const auto* envelope = std::get_if<ChatEnvelope>(&shown)) check(*envelope);
    return 0;
}
