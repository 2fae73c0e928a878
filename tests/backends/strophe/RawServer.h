#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace supportsdk::test {

/// A server on loopback that plays a script to its first client: waits for a piece of text, says
/// something. It keeps the connection open afterwards until it is destroyed, unless told to close.
/// What comes after the script goes to `heard`, on the server's own thread.
class RawServer {
 public:
    struct Line {
        /// Waited for in all that came since the line before; "" waits for nothing.
        std::string after;
        std::string say;
    };

    /// Accepts, and says nothing.
    RawServer() : RawServer({}, false) {}
    explicit RawServer(std::vector<Line> script, bool closeAtEnd = false,
                       std::function<void(std::string_view)> heard = nullptr);
    ~RawServer();
    RawServer(const RawServer&) = delete;
    RawServer& operator=(const RawServer&) = delete;

    [[nodiscard]] std::uint16_t port() const { return port_; }

    /// What a server without TLS says up to the bound stream of "ann@raw.test/desk".
    static std::vector<Line> loginScript();

 private:
    void run(const std::vector<Line>& script, bool closeAtEnd,
             const std::function<void(std::string_view)>& heard);
    bool awaitText(const std::string& text);

    int listener_ = -1;
    std::atomic<int> client_ = -1;
    std::uint16_t port_ = 0;
    std::thread thread_;
};

}  // namespace supportsdk::test
