#include "supportsdk/chat/QDConnectChat.h"

#include "supportsdk/core/Fields.h"

namespace supportsdk {

void QDConnectChat::populate(const Json& response) {
    created = stringForKey(response, "created");
    participants = arrayForKey(response, "participants");
    participants_eligible = dictionaryForKey(response, "participants_eligible");
    external_id = stringForKey(response, "external_id");
    title = stringForKey(dictionaryForKey(response, "comm"), "title");
    accessToken = stringForKey(response, "access_token");
}

}  // namespace supportsdk
