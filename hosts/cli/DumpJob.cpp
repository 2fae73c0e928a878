#include "hosts/cli/DumpJob.h"

#include <mutex>

namespace supportsdk::host {

struct DumpJob::Shared {
    explicit Shared(Handlers theHandlers) : handlers(std::move(theHandlers)) {}

    Handlers handlers;  // main thread
    std::mutex mutex;
    DumpProgress latest;
    bool isPosted = false;
};

DumpJob::DumpJob(std::shared_ptr<MainQueue> queue, Work work, Handlers handlers)
    : shared_(std::make_shared<Shared>(std::move(handlers))),
      thread_([shared = shared_, queue = std::move(queue),
               work = std::move(work)](std::stop_token stop) {
          auto result = run(shared, *queue, work, std::move(stop));
          queue->post([weak = std::weak_ptr(shared), result = std::move(result)] {
              const auto alive = weak.lock();
              if (!alive) return;
              const auto done = std::move(alive->handlers.done);
              done(result);
          });
      }) {}

DumpResult DumpJob::run(const std::shared_ptr<Shared>& shared, MainQueue& queue, const Work& work,
                        std::stop_token stop) {
    DumpOptions options;
    options.stop = std::move(stop);
    // A folder of many small files must not fill the main queue.
    options.progress = [&](const DumpProgress& progress) {
        const std::lock_guard lock(shared->mutex);
        shared->latest = progress;
        if (std::exchange(shared->isPosted, true)) return;
        queue.post([weak = std::weak_ptr(shared)] {
            const auto alive = weak.lock();
            if (!alive) return;
            DumpProgress latest;
            {
                const std::lock_guard posted(alive->mutex);
                alive->isPosted = false;
                latest = alive->latest;
            }
            alive->handlers.progress(latest);
        });
    };
    return work(options);
}

}  // namespace supportsdk::host
