#include "tests/backends/strophe/RawServer.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>

namespace supportsdk::test {

RawServer::RawServer(std::vector<Line> script, bool closeAtEnd,
                     std::function<void(std::string_view)> heard) {
    listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (bind(listener_, generic, size) != 0 || listen(listener_, 8) != 0) return;
    getsockname(listener_, generic, &size);
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this, script = std::move(script), closeAtEnd, heard = std::move(heard)] {
        client_ = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        run(script, closeAtEnd, heard);
    });
}

RawServer::~RawServer() {
    shutdown(listener_, SHUT_RDWR);
    if (client_ >= 0) shutdown(client_, SHUT_RDWR);
    if (thread_.joinable()) thread_.join();
    if (client_ >= 0) close(client_);
    close(listener_);
}

void RawServer::run(const std::vector<Line>& script, bool closeAtEnd,
                    const std::function<void(std::string_view)>& heard) {
    for (const auto& line : script) {
        if (!awaitText(line.after)) return;
        std::size_t sent = 0;
        while (sent < line.say.size()) {
            const auto count =
                send(client_, line.say.data() + sent, line.say.size() - sent, MSG_NOSIGNAL);
            if (count <= 0) return;
            sent += static_cast<std::size_t>(count);
        }
    }
    if (closeAtEnd) shutdown(client_, SHUT_RDWR);
    std::array<char, 65536> buffer{};
    while (heard) {
        const auto count = recv(client_, buffer.data(), buffer.size(), 0);
        if (count <= 0) return;
        heard({buffer.data(), static_cast<std::size_t>(count)});
    }
}

bool RawServer::awaitText(const std::string& text) {
    std::string seen;
    std::array<char, 4096> buffer{};
    while (seen.find(text) == std::string::npos) {
        const auto count = recv(client_, buffer.data(), buffer.size(), 0);
        if (count <= 0) return false;
        seen.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return true;
}

std::vector<RawServer::Line> RawServer::loginScript() {
    const std::string header =
        "<?xml version='1.0'?><stream:stream xmlns='jabber:client' "
        "xmlns:stream='http://etherx.jabber.org/streams' id='1' from='raw.test' version='1.0'>"
        "<stream:features>";
    return {
        {"<stream:stream", header + "<mechanisms xmlns='urn:ietf:params:xml:ns:xmpp-sasl'>"
                                    "<mechanism>PLAIN</mechanism></mechanisms></stream:features>"},
        {"</auth>", "<success xmlns='urn:ietf:params:xml:ns:xmpp-sasl'/>"},
        {"<stream:stream",
         header + "<bind xmlns='urn:ietf:params:xml:ns:xmpp-bind'/></stream:features>"},
        {"</iq>",
         "<iq type='result' id='_xmpp_bind1'><bind xmlns='urn:ietf:params:xml:ns:xmpp-bind'>"
         "<jid>ann@raw.test/desk</jid></bind></iq>"}};
}

}  // namespace supportsdk::test
