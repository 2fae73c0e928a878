#include "supportsdk/proactive/RunAndWait.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace supportsdk {

namespace {

/// A free thread comes sooner than this. None may be free for as long as a name look-up takes, and
/// whoever waits may be the one thread that others wait for.
constexpr std::chrono::milliseconds patience{50};

/// One piece of work that two threads could run: whoever claims it first does. Outlives both.
class Errand {
 public:
    explicit Errand(const std::function<void()>& work) : work_(work) {}

    void runInBackground() {
        if (!claim()) return;
        work_();
        enter(State::done);
    }

    void finish() {
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, patience, [this] { return state_ != State::waiting; });
        if (state_ == State::waiting) {
            state_ = State::claimed;
            lock.unlock();
            work_();
            return;
        }
        changed_.wait(lock, [this] { return state_ == State::done; });
    }

 private:
    enum class State { waiting, claimed, done };

    bool claim() {
        const std::lock_guard lock(mutex_);
        if (state_ != State::waiting) return false;
        change(State::claimed);
        return true;
    }

    void enter(State state) {
        const std::lock_guard lock(mutex_);
        change(state);
    }

    void change(State state) {
        state_ = state;
        changed_.notify_one();
    }

    /// The caller's own, who stays until it has run; not to be touched by who has not claimed it.
    const std::function<void()>& work_;
    std::mutex mutex_;
    std::condition_variable changed_;
    State state_ = State::waiting;
};

}  // namespace

void runAndWait(BackgroundQueue& queue, const std::function<void()>& work) {
    const auto errand = std::make_shared<Errand>(work);
    queue.post([errand] { errand->runInBackground(); });
    errand->finish();
}

}  // namespace supportsdk
