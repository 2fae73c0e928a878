#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Images.h"
#include "supportsdk/platform/Registration.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

class Support;

/// One channel in the menu.
struct SupportMenuEntry {
    std::string label;
    /// Null without an icon.
    ImagePtr image;
    std::optional<Color> color;
    std::function<void()> action;
};

/// The menu that a host shows as a list or as buttons, as data. Its colours and sizes are those of
/// support->appearance. Main thread.
class SUPPORTSDK_API SupportMenuView {
 public:
    /// What the menu asks of its picture.
    class View {
     public:
        virtual ~View() = default;
        /// Take the menu off the screen. May come when it is gone already.
        virtual void menuShouldDisappear(SupportMenuView& menu) = 0;
        /// The system's look has changed: read the colours again.
        virtual void menuAppearanceDidChange(SupportMenuView& menu) { (void)menu; }
    };

    /// Never null; `support` may be.
    static std::shared_ptr<SupportMenuView> create(std::shared_ptr<Support> support);
    SupportMenuView(const SupportMenuView&) = delete;
    SupportMenuView& operator=(const SupportMenuView&) = delete;

    /// Asks the view to take the menu away.
    void removeFromSuperview();

    /// Takes the menu away and runs the entry's action; nothing happens beyond the last entry.
    void select(std::size_t index);

    std::weak_ptr<View> view;
    /// Null when no configuration was loaded.
    const std::shared_ptr<Support> support;
    std::string heading;
    std::vector<SupportMenuEntry> entries;
    /// 2 buttons, 3 icon list, 4 icon list with an exit entry.
    int menuStyle = 3;
    bool showLoginPrompt = false;

 private:
    explicit SupportMenuView(std::shared_ptr<Support> support);

    Registration traits_;
};

}  // namespace supportsdk
