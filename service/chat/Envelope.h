#pragma once

#include <optional>
#include <string>

#include "supportsdk/platform/Values.h"

namespace supportsdk::service {

/// The MD5 of a kind word in lower-case hexadecimal, by which a message says what it is.
std::string secretOf(const std::string& kindWord);

/// The kind word behind an envelope's "secret"; nothing for a secret that is none of ours.
std::optional<std::string> kindWordOf(const Json& envelope);

/// Who speaks.
struct Speaker {
    /// "partners_users:7"
    std::string key;
    std::string name;
    std::string avatar;
};

/// A JSON body of the kind `kindWord`: "message", "actions", "kb" and "attachment" as in `content`,
/// and a "context" that names the speaker, members of `content`'s own "context" winning. In
/// "video_chat" the context's "from" is the room to join, taken from `content`'s "room".
Json makeEnvelope(const std::string& kindWord, const Json& content, const Speaker& speaker);

/// What a person reads in a message body, plain or an envelope; nothing when it is no line at all.
std::optional<std::string> readableText(const std::string& body);

/// Where the picture of a participant lies, below the address of the service.
std::string avatarPath(const std::string& participantKey);

}  // namespace supportsdk::service
