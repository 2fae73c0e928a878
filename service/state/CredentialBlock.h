#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace supportsdk::service {

/// How a customer gets into the chat room of an issue.
struct ChatCredentials {
    std::string commId;
    /// Bare JID.
    std::string jid;
    std::string password;
    std::string host;
    std::uint16_t port = 0;
    /// PARTICIPANT_KEY;anything
    std::string resource;
};

/// The credentials as JSON in ASCII, filled up with NUL to whole blocks, AES-256-ECB without
/// padding, Base64. The key is `apiKey` filled up with zeros or cut to 32 bytes. Nothing when the
/// cipher fails.
std::optional<std::string> encryptCredentials(const ChatCredentials& credentials,
                                              const std::string& apiKey);

}  // namespace supportsdk::service
