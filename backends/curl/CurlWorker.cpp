#include "backends/curl/CurlWorker.h"

#include "backends/posix/Threads.h"

namespace supportsdk {
namespace {

constexpr std::size_t kMaximumSpare = 4;

}  // namespace

CurlWorker::CurlWorker(std::vector<std::filesystem::path> extraAuthorities,
                       std::shared_ptr<Log> log)
    : trust_(std::move(extraAuthorities), log), log_(std::move(log)) {}

CurlWorker::~CurlWorker() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        wake_.notify_one();
        if (waitsForNetwork_) curl_multi_wakeup(multi_);
    }
    if (thread_.joinable()) thread_.join();
}

bool CurlWorker::submit(std::unique_ptr<CurlTransfer> transfer) {
    const std::lock_guard lock(mutex_);
    if (!ensureStarted()) return false;
    submitted_.push_back(std::move(transfer));
    if (waitsForNetwork_) {
        curl_multi_wakeup(multi_);
    } else {
        wake_.notify_one();
    }
    return true;
}

bool CurlWorker::ensureStarted() {
    if (thread_.joinable()) return true;
    thread_ = startThread("supportsdk-http", [this] { run(); });
    return thread_.joinable();
}

void CurlWorker::run() {
    curl_global_init(CURL_GLOBAL_DEFAULT);
    multi_ = curl_multi_init();
    while (admit()) {
        int running = 0;
        curl_multi_perform(multi_, &running);
        reap();
        expire();
        waitForNetwork();
    }
    abandonAll();
    spare_.clear();
    curl_multi_cleanup(multi_);
}

/// Takes over what was submitted, and waits for it when there is nothing else to do; false at the
/// end.
bool CurlWorker::admit() {
    Transfers fresh;
    {
        std::unique_lock lock(mutex_);
        waitsForNetwork_ = false;
        if (active_.empty()) {
            wake_.wait(lock, [this] { return stopping_ || !submitted_.empty(); });
        }
        if (stopping_) return false;
        fresh.swap(submitted_);
    }
    for (auto& each : fresh) start(std::move(each));
    return true;
}

void CurlWorker::start(std::unique_ptr<CurlTransfer> transfer) {
    active_.push_back(std::move(transfer));
    CurlTransfer& started = *active_.back();
    if (!started.prepare(spareEasy(), trust_) ||
        curl_multi_add_handle(multi_, started.easy()) != CURLM_OK) {
        end(std::prev(active_.end()), CURLE_OUT_OF_MEMORY);
    }
}

void CurlWorker::reap() {
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(multi_, &left)) {
        if (message->msg != CURLMSG_DONE) continue;
        const CURLcode code = message->data.result;
        const auto transfer = std::find_if(active_.begin(), active_.end(), [&](const auto& each) {
            return each->easy() == message->easy_handle;
        });
        if (transfer != active_.end()) end(transfer, code);
    }
}

void CurlWorker::end(Transfers::iterator transfer, CURLcode code) {
    auto ended = std::move(*transfer);
    active_.erase(transfer);
    if (ended->easy()) curl_multi_remove_handle(multi_, ended->easy());
    if (ended->followsRedirect(code)) {
        spare_.push_back(ended->takeEasy());
        start(std::move(ended));
        return;
    }
    ended->finish(code);
    if (log_ && !ended->failure().empty()) log_->write(ended->failure());
    if (ended->easy() && spare_.size() < kMaximumSpare) spare_.push_back(ended->takeEasy());
}

void CurlWorker::expire() {
    const auto now = CurlTransfer::Clock::now();
    for (std::size_t i = 0; i < active_.size();) {
        if (active_[i]->deadline() <= now) {
            end(active_.begin() + static_cast<std::ptrdiff_t>(i), CURLE_OPERATION_TIMEDOUT);
        } else {
            ++i;
        }
    }
}

void CurlWorker::waitForNetwork() {
    if (active_.empty()) return;
    auto deadline = active_.front()->deadline();
    for (const auto& each : active_) deadline = std::min(deadline, each->deadline());
    {
        const std::lock_guard lock(mutex_);
        if (stopping_ || !submitted_.empty()) return;
        waitsForNetwork_ = true;
    }
    const auto limit =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - CurlTransfer::Clock::now());
    curl_multi_poll(multi_, nullptr, 0, static_cast<int>(std::max<long>(0, limit.count())),
                    nullptr);
}

void CurlWorker::abandonAll() {
    while (!active_.empty()) end(std::prev(active_.end()), CURLE_ABORTED_BY_CALLBACK);
    for (auto& each : submitted_) each->finish(CURLE_ABORTED_BY_CALLBACK);
}

EasyPtr CurlWorker::spareEasy() {
    if (spare_.empty()) return EasyPtr(curl_easy_init());
    auto easy = std::move(spare_.back());
    spare_.pop_back();
    return easy;
}

}  // namespace supportsdk
