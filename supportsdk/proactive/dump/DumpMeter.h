#pragma once

#include <cstdint>
#include <string>

#include "supportsdk/proactive/Dump.h"

namespace supportsdk {

/// Tells the host how far the work is, and hears whether it is still wanted. One thread at a time.
class DumpMeter {
 public:
    explicit DumpMeter(const DumpOptions& options) : options_(options) {}

    void setTotal(std::uintmax_t bytes) { progress_.bytesTotal = bytes; }
    /// A file or folder begins.
    void begin(const std::string& path) {
        if (!options_.progress) return;
        progress_.path = path;
        report();
    }
    void endFile() { progress_.filesDone++; }
    /// `worked` bytes were handled, so that `done` of the total are.
    void advance(std::size_t worked, std::uintmax_t done) {
        progress_.bytesDone = done;
        worked_ += worked;
        if (worked_ >= reportEvery) report();
    }
    /// The last word.
    void report() {
        worked_ = 0;
        if (options_.progress) options_.progress(progress_);
    }
    [[nodiscard]] bool isStopped() const { return options_.stop.stop_requested(); }

 private:
    static constexpr std::size_t reportEvery = std::size_t{1024} * 1024;

    const DumpOptions& options_;
    DumpProgress progress_;
    std::size_t worked_ = 0;
};

}  // namespace supportsdk
