#pragma once

#include <strophe.h>

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace supportsdk::bench {

/// The peer to measure against: libstrophe with a thread of its own that polls its socket and an
/// eventfd, and nothing around it. Clear text; logs in as ann@raw.test.
class RawStrophe {
 public:
    static constexpr const char* threadName = "raw-strophe";

    explicit RawStrophe(std::uint16_t port);
    ~RawStrophe();
    RawStrophe(const RawStrophe&) = delete;
    RawStrophe& operator=(const RawStrophe&) = delete;

    void send(std::string xml);
    [[nodiscard]] bool isUp() const { return up_; }
    [[nodiscard]] std::size_t received() const { return received_; }

 private:
    void run(std::uint16_t port);

    int wake_;
    std::mutex mutex_;
    std::vector<std::string> queue_;
    std::atomic<bool> stop_ = false;
    std::atomic<bool> up_ = false;
    std::atomic<std::size_t> received_ = 0;
    std::thread thread_;
};

}  // namespace supportsdk::bench
