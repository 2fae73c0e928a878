#pragma once

#include <unistd.h>

#include <utility>

namespace supportsdk {

/// Owns an open descriptor, or none.
class Descriptor {
 public:
    Descriptor() = default;
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    Descriptor(Descriptor&& other) noexcept : descriptor_(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        other.reset();
        return *this;
    }
    ~Descriptor() { reset(); }

    explicit operator bool() const { return descriptor_ >= 0; }
    [[nodiscard]] int get() const { return descriptor_; }
    [[nodiscard]] int release() { return std::exchange(descriptor_, -1); }
    void reset() {
        if (descriptor_ >= 0) ::close(release());
    }

 private:
    int descriptor_ = -1;
};

}  // namespace supportsdk
