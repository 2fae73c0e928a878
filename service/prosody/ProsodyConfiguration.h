#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "service/prosody/CertificateAuthority.h"

namespace supportsdk::service {

struct ProsodyConfiguration {
    std::filesystem::path folder;
    std::string domain;
    std::optional<CertificateFiles> certificate;
    std::uint16_t c2sPort = 0;
    std::uint16_t httpPort = 0;
    std::string controlToken;
    /// Where the server says which ports it got.
    std::filesystem::path readyFile;

    /// As a file of Prosody's, in Lua.
    [[nodiscard]] std::string text() const;
};

}  // namespace supportsdk::service
