#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace supportsdk {

/// Names for the host, of which a hostile archive may hold millions.
class SkippedNames {
 public:
    static constexpr std::size_t maximum = 1000;
    /// A name may have a MiB, which nobody reads.
    static constexpr std::size_t maximumLength = std::size_t{16} * 1024;

    void add(std::string name) {
        if (name.size() > maximumLength) name.resize(maximumLength);
        if (names_.size() < maximum)
            names_.push_back(std::move(name));
        else
            more_++;
    }
    [[nodiscard]] std::vector<std::string> take() {
        if (more_ > 0) names_.push_back("and " + std::to_string(more_) + " more");
        return std::move(names_);
    }

 private:
    std::vector<std::string> names_;
    std::size_t more_ = 0;
};

}  // namespace supportsdk
