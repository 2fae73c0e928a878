#pragma once

#include <functional>
#include <utility>

namespace supportsdk {

/// Something that lasts until it is ended: a timer, an observation, a request. Ends when destroyed
/// or reset; move-only. Ending twice, or ending what is over already, does nothing.
class Registration {
 public:
    Registration() = default;
    explicit Registration(std::function<void()> end) : end_(std::move(end)) {}
    ~Registration() { reset(); }

    Registration(Registration&& other) noexcept : end_(std::exchange(other.end_, nullptr)) {}
    Registration& operator=(Registration&& other) noexcept {
        if (this != &other) {
            reset();
            end_ = std::exchange(other.end_, nullptr);
        }
        return *this;
    }
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;

    void reset() {
        if (auto end = std::exchange(end_, nullptr)) end();
    }

    /// True until it was ended through this object; a timer that has fired still counts as held.
    explicit operator bool() const { return static_cast<bool>(end_); }

 private:
    std::function<void()> end_;
};

}  // namespace supportsdk
