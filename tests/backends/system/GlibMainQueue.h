#pragma once

#include <glib.h>

#include <deque>
#include <memory>
#include <mutex>
#include <set>
#include <thread>

#include "supportsdk/platform/Queues.h"

namespace supportsdk::test {

/// A main queue over a GLib loop that belongs to the host: what a host with a loop of its own
/// writes.
class GlibMainQueue : public MainQueue {
 public:
    explicit GlibMainQueue(GMainContext* context)
        : context_(g_main_context_ref(context)),
          wake_(g_source_new(&wakeFunctions_, sizeof(Wake))) {
        reinterpret_cast<Wake*>(wake_)->queue = this;
        g_source_attach(wake_, context_);
    }

    ~GlibMainQueue() override {
        // Freeing work may post, or end timers of this queue.
        while (!timers_->empty()) (*timers_->begin())->end(*timers_);
        while (takeFront()) continue;
        g_source_destroy(wake_);
        g_source_unref(wake_);
        g_main_context_unref(context_);
    }

    void post(std::function<void()> work) override {
        {
            const std::lock_guard lock(mutex_);
            posted_.push_back(std::move(work));
        }
        g_main_context_wakeup(context_);
    }

    [[nodiscard]] Registration after(std::chrono::milliseconds delay,
                                     std::function<void()> work) override {
        auto timer = std::make_shared<Timer>();
        timer->work = std::move(work);
        timer->source = g_timeout_source_new(static_cast<guint>(delay.count()));
        timer->timers = timers_.get();
        timers_->insert(timer);
        g_source_set_callback(timer->source, &Timer::fire, timer.get(), nullptr);
        g_source_attach(timer->source, context_);
        return Registration([timers = std::weak_ptr(timers_), weak = std::weak_ptr(timer)] {
            const auto set = timers.lock();
            const auto held = weak.lock();
            if (set && held) held->end(*set);
        });
    }

    [[nodiscard]] bool isCurrent() const override { return thread_ == std::this_thread::get_id(); }

 private:
    struct Timer : std::enable_shared_from_this<Timer> {
        using Set = std::set<std::shared_ptr<Timer>>;

        void end(Set& set) {
            const auto self = shared_from_this();
            if (set.erase(self) == 0) return;
            g_source_destroy(source);
            g_source_unref(source);
        }
        static gboolean fire(gpointer data) {
            const auto self = static_cast<Timer*>(data)->shared_from_this();
            self->end(*self->timers);
            self->work();
            return G_SOURCE_REMOVE;
        }

        GSource* source = nullptr;
        Set* timers = nullptr;
        std::function<void()> work;
    };

    struct Wake {
        GSource source;
        GlibMainQueue* queue;
    };

    [[nodiscard]] bool hasPosted() {
        const std::lock_guard lock(mutex_);
        return !posted_.empty();
    }

    std::function<void()> takeFront() {
        const std::lock_guard lock(mutex_);
        if (posted_.empty()) return nullptr;
        auto work = std::move(posted_.front());
        posted_.pop_front();
        return work;
    }

    static gboolean ready(GSource* source) {
        return reinterpret_cast<Wake*>(source)->queue->hasPosted();
    }

    inline static GSourceFuncs wakeFunctions_ = {
        [](GSource* source, gint* timeout) {
            *timeout = -1;
            return ready(source);
        },
        ready,
        [](GSource* source, GSourceFunc, gpointer) -> gboolean {
            if (const auto work = reinterpret_cast<Wake*>(source)->queue->takeFront()) work();
            return G_SOURCE_CONTINUE;
        },
        nullptr,
        nullptr,
        nullptr};

    GMainContext* context_;
    GSource* wake_;
    std::shared_ptr<Timer::Set> timers_ = std::make_shared<Timer::Set>();
    std::mutex mutex_;
    std::deque<std::function<void()>> posted_;
    const std::thread::id thread_ = std::this_thread::get_id();
};

}  // namespace supportsdk::test
