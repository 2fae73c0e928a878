#pragma once

#include <httplib.h>

#include <atomic>
#include <string>
#include <thread>

namespace supportsdk::bench {

/// Answers every request on loopback with one picture.
class PictureServer {
 public:
    explicit PictureServer(std::string picture) {
        server_.Get(".*", [this, picture = std::move(picture)](const auto&, auto& response) {
            ++requests;
            response.set_content(picture, "image/png");
        });
        server_.set_tcp_nodelay(true);
        server_.set_keep_alive_max_count(1'000'000);
        port_ = server_.bind_to_any_port("127.0.0.1");
        thread_ = std::thread([this] { server_.listen_after_bind(); });
        while (!server_.is_running()) std::this_thread::yield();
    }
    ~PictureServer() {
        server_.stop();
        thread_.join();
    }
    PictureServer(const PictureServer&) = delete;
    PictureServer& operator=(const PictureServer&) = delete;

    [[nodiscard]] std::string address() const {
        return "http://127.0.0.1:" + std::to_string(port_);
    }

    std::atomic<std::size_t> requests = 0;

 private:
    httplib::Server server_;
    int port_ = 0;
    std::thread thread_;
};

}  // namespace supportsdk::bench
