#include "backends/gio/PortalTraits.h"

#include <utility>

#include "backends/gio/ColorSchemeWatcher.h"
#include "supportsdk/platform/Observers.h"

namespace supportsdk {

/// Main thread.
struct PortalTraits::State {
    void take(bool isDark) {
        if (std::exchange(dark, isDark) != isDark) observers.notify();
    }

    bool dark = false;
    Observers observers;
};

PortalTraits::PortalTraits(const std::shared_ptr<MainQueue>& mainQueue)
    : mainQueue_(mainQueue), state_(std::make_shared<State>()) {}

PortalTraits::~PortalTraits() = default;

bool PortalTraits::darkMode() const {
    watch();
    return state_->dark;
}

Registration PortalTraits::observe(std::function<void()> changed) {
    watch();
    return state_->observers.add(std::move(changed));
}

void PortalTraits::watch() const {
    if (watcher_) return;
    watcher_ = std::make_unique<ColorSchemeWatcher>(
        [weakQueue = mainQueue_, weak = std::weak_ptr(state_)](bool dark) {
            const auto queue = weakQueue.lock();
            if (!queue) return;
            queue->post([weak, dark] {
                if (const auto state = weak.lock()) state->take(dark);
            });
        });
}

}  // namespace supportsdk
