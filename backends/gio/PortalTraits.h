#pragma once

#include <functional>
#include <memory>

#include "supportsdk/platform/Queues.h"
#include "supportsdk/platform/Screens.h"

namespace supportsdk {

class ColorSchemeWatcher;

/// The look that the desktop asks for, from its portal. Light until the portal has answered, and
/// where there is none; who observes is told when that turns out otherwise. Nothing runs before the
/// first question. The system's own colours are the toolkit's business: there are none here.
class PortalTraits final : public Traits {
 public:
    explicit PortalTraits(const std::shared_ptr<MainQueue>& mainQueue);
    ~PortalTraits() override;
    PortalTraits(const PortalTraits&) = delete;
    PortalTraits& operator=(const PortalTraits&) = delete;

    [[nodiscard]] bool darkMode() const override;
    [[nodiscard]] Registration observe(std::function<void()> changed) override;

 private:
    struct State;

    void watch() const;

    const std::weak_ptr<MainQueue> mainQueue_;
    const std::shared_ptr<State> state_;
    mutable std::unique_ptr<ColorSchemeWatcher> watcher_;
};

}  // namespace supportsdk
