#include "service/prosody/ProsodyConfiguration.h"

#include <sstream>

namespace supportsdk::service {

namespace {

// A Lua string literal.
std::string quoted(const std::string& text) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string literal = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\' || byte < 0x20) {
            literal += "\\x";
            literal += digits[byte >> 4U];
            literal += digits[byte & 15U];
        } else {
            literal += c;
        }
    }
    return literal + "\"";
}

// 127.1 is 127.0.0.1 too; Prosody takes two services on port 0 of one address for a clash.
constexpr auto globalPart = R"lua(run_as_root = true
network_backend = "epoll"
interfaces = { "127.0.0.1" }
http_interfaces = { "127.1" }
c2s_direct_tls_ports = {}
s2s_ports = {}
https_ports = {}
authentication = "internal_hashed"
default_storage = "memory"
storage = { accounts = "internal" }
consider_websocket_secure = true
http_default_cors_enabled = true
modules_enabled = {
    "roster", "saslauth", "tls", "disco", "ping", "posix", "smacks", "admin_shell", "bosh",
    "websocket", "presence", "message", "iq"
}
modules_disabled = { "s2s", "offline" }
)lua";

constexpr auto roomsPart = R"lua(    modules_enabled = { "support_control" }
    restrict_room_creation = false
    muc_room_locking = false
    muc_room_default_history_length = 50
    max_history_messages = 50
    muc_room_default_public_jids = true
)lua";

}  // namespace

std::string ProsodyConfiguration::text() const {
    const auto path = [this](const char* name) { return quoted((folder / name).string()); };
    std::ostringstream out;
    out << globalPart << "data_path = " << path("data") << "\npidfile = " << path("prosody.pid")
        << "\nadmin_socket = " << path("prosody.sock") << "\nplugin_paths = { " << path("modules")
        << " }\nlog = { info = " << path("prosody.log") << " }\nc2s_ports = { " << c2sPort
        << " }\nhttp_ports = { " << httpPort << " }\nhttp_default_host = " << quoted(domain)
        << "\nc2s_require_encryption = " << (certificate ? "true" : "false") << "\n";
    if (certificate) {
        out << "certificates = " << path("data")
            << "\nssl = { certificate = " << quoted(certificate->certificate.string())
            << ", key = " << quoted(certificate->key.string()) << " }\n";
    }
    out << "VirtualHost " << quoted(domain) << "\n";
    if (!certificate) out << "    modules_disabled = { \"tls\" }\n";
    out << "Component " << quoted("rooms." + domain) << " \"muc\"\n"
        << roomsPart << "    support_control_token = " << quoted(controlToken)
        << "\n    support_control_ready_file = " << quoted(readyFile.string()) << "\n";
    return out.str();
}

}  // namespace supportsdk::service
