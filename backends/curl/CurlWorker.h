#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "backends/curl/CurlTransfer.h"

namespace supportsdk {

/// The thread that all transfers of a client run on. Started with the first one; asleep without a
/// time limit while there are none.
class CurlWorker {
 public:
    CurlWorker(std::vector<std::filesystem::path> extraAuthorities, std::shared_ptr<Log> log);
    /// Ends what is in flight with an error and joins the thread.
    ~CurlWorker();
    CurlWorker(const CurlWorker&) = delete;
    CurlWorker& operator=(const CurlWorker&) = delete;

    /// Any thread. False when there is no thread to run it; `transfer` is dropped then.
    [[nodiscard]] bool submit(std::unique_ptr<CurlTransfer> transfer);

 private:
    using Transfers = std::vector<std::unique_ptr<CurlTransfer>>;

    [[nodiscard]] bool ensureStarted();  // under mutex_
    void run();
    [[nodiscard]] bool admit();
    void start(std::unique_ptr<CurlTransfer> transfer);
    void reap();
    void end(Transfers::iterator transfer, CURLcode code);
    void expire();
    void waitForNetwork();
    void abandonAll();
    [[nodiscard]] EasyPtr spareEasy();

    std::mutex mutex_;
    std::condition_variable wake_;
    Transfers submitted_;           // under mutex_
    bool stopping_ = false;         // under mutex_
    bool waitsForNetwork_ = false;  // under mutex_
    std::thread thread_;            // under mutex_

    // The worker's own.
    TrustStore trust_;
    std::shared_ptr<Log> log_;
    CURLM* multi_ = nullptr;
    Transfers active_;
    std::vector<EasyPtr> spare_;
};

}  // namespace supportsdk
