#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

#include "supportsdk/platform/HttpClient.h"
#include "supportsdk/platform/Log.h"
#include "supportsdk/platform/Queues.h"

namespace supportsdk {

class CurlWorker;

struct CurlHttpClientOptions {
    /// Where completions run. Required.
    std::shared_ptr<MainQueue> mainQueue;
    /// PEM files of certificate authorities trusted beside the system's. One that cannot be read is
    /// reported in the log and left out.
    std::vector<std::filesystem::path> extraAuthorities;
    /// Takes a line for each request that failed: method, host and cause. May be null.
    std::shared_ptr<Log> log;
};

/// HTTP over libcurl's multi interface: one worker thread, started with the first request, which
/// sleeps while nothing is in flight. HTTP/2 where the server offers it; connections are kept and
/// reused. Proxies are taken from the environment, but never for loopback addresses.
class CurlHttpClient : public HttpClient {
 public:
    explicit CurlHttpClient(CurlHttpClientOptions options);
    /// Main thread. Ends what is in flight without waiting for the network.
    ~CurlHttpClient() override;
    CurlHttpClient(const CurlHttpClient&) = delete;
    CurlHttpClient& operator=(const CurlHttpClient&) = delete;

    void send(HttpRequest request, Completion completion) override;
    [[nodiscard]] std::optional<Bytes> read(const std::string& url,
                                            std::chrono::milliseconds limit) override;

 private:
    struct Pending;

    std::shared_ptr<MainQueue> mainQueue_;
    std::shared_ptr<Pending> pending_;  // main thread
    std::unique_ptr<CurlWorker> worker_;
};

}  // namespace supportsdk
