#pragma once

#include "tests/support/LoopbackServer.h"

namespace supportsdk::test {

/// A server on loopback that plays a script to its clients: waits for a piece of text, says
/// something. It keeps the connection open afterwards until it is destroyed, unless told to close.
/// What comes after the script goes to `heard`, on the server's own thread.
class RawServer : public LoopbackServer {
 public:
    struct Line {
        /// Waited for in all that came since the line before; "" waits for nothing.
        std::string after;
        std::string say;
    };

    explicit RawServer(
        std::vector<Line> script = {}, bool closeAtEnd = false,
        const std::function<void(std::string_view)>& heard = [](auto) {})
        : LoopbackServer([script = std::move(script), closeAtEnd, heard](auto& client) {
              for (const auto& line : script) {
                  if (!awaitText(client, line.after) || !client.send(line.say)) return;
              }
              if (closeAtEnd) return;
              for (auto more = client.receive(); !more.empty(); more = client.receive())
                  heard(more);
          }) {}

    /// What a server without TLS says up to the bound stream of "ann@raw.test/desk".
    static std::vector<Line> loginScript() {
        const std::string header =
            "<?xml version='1.0'?><stream:stream xmlns='jabber:client' "
            "xmlns:stream='http://etherx.jabber.org/streams' id='1' from='raw.test' version='1.0'>"
            "<stream:features>";
        return {{"<stream:stream",
                 header + "<mechanisms xmlns='urn:ietf:params:xml:ns:xmpp-sasl'>"
                          "<mechanism>PLAIN</mechanism></mechanisms></stream:features>"},
                {"</auth>", "<success xmlns='urn:ietf:params:xml:ns:xmpp-sasl'/>"},
                {"<stream:stream",
                 header + "<bind xmlns='urn:ietf:params:xml:ns:xmpp-bind'/></stream:features>"},
                {"</iq>",
                 "<iq type='result' id='_xmpp_bind1'><bind "
                 "xmlns='urn:ietf:params:xml:ns:xmpp-bind'>"
                 "<jid>ann@raw.test/desk</jid></bind></iq>"}};
    }

 private:
    static bool awaitText(LoopbackConnection& client, const std::string& text) {
        std::string seen;
        while (seen.find(text) == std::string::npos) {
            const auto more = client.receive();
            if (more.empty()) return false;
            seen += more;
        }
        return true;
    }
};

}  // namespace supportsdk::test
