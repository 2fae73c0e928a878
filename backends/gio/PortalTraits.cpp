#include "backends/gio/PortalTraits.h"

#include <map>
#include <vector>

#include "backends/gio/ColorSchemeWatcher.h"

namespace supportsdk {

/// Main thread.
struct PortalTraits::State {
    void take(bool isDark) {
        if (dark == isDark) return;
        dark = isDark;
        std::vector<int> ids;
        for (const auto& [id, observer] : observers) ids.push_back(id);
        for (const int id : ids) {
            const auto found = observers.find(id);
            if (found == observers.end()) continue;
            const auto observer = found->second;  // it may end itself
            observer();
        }
    }

    bool dark = false;
    int lastId = 0;
    std::map<int, std::function<void()>> observers;
};

PortalTraits::PortalTraits(std::shared_ptr<MainQueue> mainQueue)
    : mainQueue_(std::move(mainQueue)), state_(std::make_shared<State>()) {}

PortalTraits::~PortalTraits() = default;

bool PortalTraits::darkMode() const {
    watch();
    return state_->dark;
}

Registration PortalTraits::observe(std::function<void()> changed) {
    watch();
    const int id = ++state_->lastId;
    state_->observers.emplace(id, std::move(changed));
    return Registration([weak = std::weak_ptr(state_), id] {
        if (const auto state = weak.lock()) state->observers.erase(id);
    });
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
