#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Images.h"
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

/// The menu that a host shows as a list or as buttons, as data. Main thread.
class SUPPORTSDK_API SupportMenuView {
 public:
    /// What the menu asks of its picture.
    class View {
     public:
        virtual ~View() = default;
        /// Take the menu off the screen. May come when it is gone already.
        virtual void menuShouldDisappear(SupportMenuView& menu) = 0;
    };

    /// Asks the view to take the menu away.
    void removeFromSuperview();

    /// Takes the menu away and runs the entry's action; nothing happens beyond the last entry.
    void select(std::size_t index);

    std::weak_ptr<View> view;
    std::shared_ptr<Support> support;
    std::string heading;
    std::vector<SupportMenuEntry> entries;
    /// 2 buttons, 3 icon list, 4 icon list with an exit entry.
    int menuStyle = 3;
    bool showLoginPrompt = false;
};

}  // namespace supportsdk
