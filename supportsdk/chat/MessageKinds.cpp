#include "supportsdk/chat/MessageKinds.h"

#include <map>
#include <string>

#include "supportsdk/core/Ciphers.h"

namespace supportsdk {

std::optional<MessageKind> messageKind(std::string_view secret) {
    static const std::map<std::string, MessageKind, std::less<>> kinds = {
        {md5Hex("video_chat"), MessageKind::videoChat},
        {md5Hex("plain"), MessageKind::plain},
        {md5Hex("attachment"), MessageKind::attachment},
        {md5Hex("extended"), MessageKind::extended},
        {md5Hex("external_chat"), MessageKind::externalChat},
        {md5Hex("kb"), MessageKind::kb},
        {md5Hex("notification"), MessageKind::notification},
    };
    const auto found = kinds.find(secret);
    return found == kinds.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace supportsdk
