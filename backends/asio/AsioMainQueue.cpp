#include "backends/asio/AsioMainQueue.h"

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <asio/steady_timer.hpp>
#include <atomic>
#include <thread>

namespace supportsdk {

namespace {

/// Shared by the waiting handler alone, so that it ends with the firing or with the loop.
struct Timer {
    Timer(asio::io_context& context, std::chrono::milliseconds delay, std::function<void()> deed)
        : clock(context, delay), work(std::move(deed)) {}

    asio::steady_timer clock;
    /// Empty once cancelled: the handler may already be queued when cancel() comes too late for it.
    std::function<void()> work;
};

}  // namespace

struct AsioMainQueue::Loop {
    void enter() { mainThread = std::this_thread::get_id(); }

    // The default number of threads, not a hint of one: with that hint, work posted by the main
    // thread would be overtaken by work that another thread posts later.
    asio::io_context context;
    // Keeps the context from stopping when it runs out of work, so it never needs a restart.
    asio::executor_work_guard<asio::io_context::executor_type> guard{context.get_executor()};
    std::atomic<std::thread::id> mainThread{std::this_thread::get_id()};
    std::atomic<bool> stopRequested{false};
};

AsioMainQueue::AsioMainQueue() : loop_(std::make_unique<Loop>()) {}

AsioMainQueue::~AsioMainQueue() = default;

void AsioMainQueue::run() {
    loop_->enter();
    while (!loop_->stopRequested.exchange(false)) loop_->context.run_one();
}

void AsioMainQueue::stop() {
    loop_->stopRequested = true;
    asio::post(loop_->context, [] {});
}

bool AsioMainQueue::runOne(std::chrono::milliseconds limit) {
    loop_->enter();
    return loop_->context.run_one_for(limit) > 0;
}

std::size_t AsioMainQueue::poll() {
    loop_->enter();
    return loop_->context.poll();
}

void AsioMainQueue::post(std::function<void()> work) {
    asio::post(loop_->context, std::move(work));
}

Registration AsioMainQueue::after(std::chrono::milliseconds delay, std::function<void()> work) {
    auto timer = std::make_shared<Timer>(loop_->context, delay, std::move(work));
    std::weak_ptr<Timer> weak = timer;
    auto& clock = timer->clock;
    clock.async_wait([timer = std::move(timer)](const std::error_code& error) {
        // Moved out, so that the work may drop its own registration while it runs.
        const auto due = std::exchange(timer->work, nullptr);
        if (!error && due) due();
    });
    return Registration([weak = std::move(weak)] {
        const auto held = weak.lock();
        if (!held) return;
        const auto dropped = std::exchange(held->work, nullptr);
        held->clock.cancel();
    });
}

bool AsioMainQueue::isCurrent() const {
    return loop_->mainThread == std::this_thread::get_id();
}

}  // namespace supportsdk
