#pragma once

#include <string>
#include <vector>

namespace supportsdk::bench {

/// Ends the program with a word when it cannot measure what it claims to.
void require(bool condition, const char* what);

/// 0 for none.
[[nodiscard]] double median(std::vector<double> values);

/// Processor time of this process's threads of that name, in seconds, so far.
[[nodiscard]] double processorSeconds(const std::string& thread);
/// The same of the calling thread.
[[nodiscard]] double processorSeconds();

/// What the process occupies in memory, in KiB, once the allocator has given back what it can.
[[nodiscard]] double residentKiB();

}  // namespace supportsdk::bench
