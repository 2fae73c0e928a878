#include "supportsdk/core/NotificationCenter.h"

#include <atomic>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

namespace supportsdk {

struct NotificationCenter::Observation {
    Handler handler;
    /// Null for an observation that lasts as long as its handle.
    const void* key = nullptr;
    std::weak_ptr<const void> object;
    std::atomic<bool> ended = false;

    [[nodiscard]] bool isOver() const { return ended || (key && object.expired()); }
};

struct NotificationCenter::State {
    using Observations = std::vector<std::shared_ptr<Observation>>;

    std::mutex mutex;
    std::map<std::string, Observations> observations;

    void add(const std::string& name, std::shared_ptr<Observation> observation) {
        const std::lock_guard lock(mutex);
        observations[name].push_back(std::move(observation));
    }

    Observations observersOf(const std::string& name) {
        const std::lock_guard lock(mutex);
        const auto found = observations.find(name);
        return found == observations.end() ? Observations() : found->second;
    }

    /// Takes out what `matches`, marked as ended. What it held is released outside the lock: a
    /// handler may own objects whose end comes back here.
    template <typename Matches>
    void end(const std::string& name, const Matches& matches) {
        Observations taken;
        const std::lock_guard lock(mutex);
        const auto found = observations.find(name);
        if (found == observations.end()) return;
        Observations kept;
        for (auto& observation : found->second) {
            (matches(*observation) ? taken : kept).push_back(std::move(observation));
        }
        for (const auto& observation : taken) observation->ended = true;
        found->second = std::move(kept);
        if (found->second.empty()) observations.erase(found);
    }
};

NotificationCenter::NotificationCenter() : state_(std::make_shared<State>()) {}

NotificationCenter::~NotificationCenter() = default;

NotificationCenter& NotificationCenter::shared() {
    // Never destroyed: static objects of the host may still post while the process ends.
    static auto& center = *new NotificationCenter;
    return center;
}

void NotificationCenter::post(const std::string& name, NotificationObject object,
                              std::optional<Json> userInfo) {
    const Notification notification{name, std::move(object), std::move(userInfo)};
    bool someAreOver = false;
    for (const auto& observation : state_->observersOf(name)) {
        // Holding the object keeps it from going away in the middle of its own handler.
        const auto object_ = observation->object.lock();
        if (!observation->isOver()) observation->handler(notification);
        someAreOver |= observation->isOver();
    }
    if (someAreOver) {
        state_->end(name, [](const Observation& observation) { return observation.isOver(); });
    }
}

Registration NotificationCenter::addObserver(const std::string& name, Handler handler) {
    auto observation = std::make_shared<Observation>();
    observation->handler = std::move(handler);
    state_->add(name, observation);
    return Registration([state = std::weak_ptr(state_), name, weak = std::weak_ptr(observation)] {
        const auto held = weak.lock();
        if (!held) return;
        held->ended = true;
        if (const auto center = state.lock()) {
            center->end(name, [&held](const Observation& each) { return &each == held.get(); });
        }
    });
}

void NotificationCenter::addObserver(const std::shared_ptr<const void>& object,
                                     const std::string& name, Handler handler) {
    if (!object) return;
    auto observation = std::make_shared<Observation>();
    observation->handler = std::move(handler);
    observation->key = object.get();
    observation->object = object;
    state_->add(name, std::move(observation));
}

void NotificationCenter::removeObserver(const void* object, const std::string& name) {
    if (!object) return;
    state_->end(name, [object](const Observation& each) { return each.key == object; });
}

}  // namespace supportsdk
