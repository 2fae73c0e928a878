#pragma once

#include <functional>

#include "supportsdk/platform/Queues.h"

namespace supportsdk {

/// Runs `work` on a background thread while the caller waits for it, however long it takes. When
/// none comes to it at once (all are busy, the queue is ending, or the caller is the last of them)
/// the caller runs it himself: so it runs exactly once, and nobody waits for what cannot come. Any
/// thread. `work` must not throw.
void runAndWait(BackgroundQueue& queue, const std::function<void()>& work);

}  // namespace supportsdk
