#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Registration.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// A button in a screen's bar.
struct BarButton {
    std::string label;
    std::function<void()> action;
};

/// A screen without a toolkit: state and the operations behind its controls. Whoever shows it keeps
/// it alive and calls the life-cycle operations, each on the main thread, in the order of their
/// declaration.
class SUPPORTSDK_API ScreenController : public std::enable_shared_from_this<ScreenController> {
 public:
    ScreenController() = default;
    virtual ~ScreenController() = default;
    ScreenController(const ScreenController&) = delete;
    ScreenController& operator=(const ScreenController&) = delete;

    /// The name of the class, for hosts that map screens to pictures of their own.
    [[nodiscard]] virtual std::string_view className() const { return "ScreenController"; }

    /// Once, before it is shown for the first time.
    virtual void viewDidLoad() {}
    virtual void viewWillAppear() {}
    virtual void viewDidAppear() {}
    virtual void viewWillDisappear() {}
    virtual void viewDidDisappear() {}

    std::string title;
    std::vector<BarButton> leftBarButtons;
    std::vector<BarButton> rightBarButtons;
    /// While this screen is on top, its stack shows no bar: the screen has one of its own, or needs
    /// none. Read each time the screen appears.
    bool isNavigationBarHidden = false;

    /// The screen that was presented on this one, and the reverse; kept by whoever shows screens.
    std::shared_ptr<ScreenController> presentedController;
    std::weak_ptr<ScreenController> presentingController;
};

/// A stack of screens, the last one on top.
class SUPPORTSDK_API NavigationController : public ScreenController {
 public:
    [[nodiscard]] std::string_view className() const override { return "NavigationController"; }

    std::vector<std::shared_ptr<ScreenController>> children;
};

enum class ActionStyle { plain, cancel, destructive };

/// A choice in an alert or an action sheet.
struct AlertAction {
    std::string label;
    ActionStyle style = ActionStyle::plain;
    /// Gets what stands in the alert's fields, in their order; may be empty for "just close".
    std::function<void(const std::vector<std::string>& fields)> handler;
};

struct AlertField {
    std::string placeholder;
    std::string text;
};

struct Alert {
    std::string title;
    std::string message;
    std::vector<AlertField> fields;
    std::vector<AlertAction> actions;
};

struct ActionSheet {
    std::string title;
    std::string message;
    std::optional<Color> tint;
    std::vector<AlertAction> actions;
};

/// What screens ask of whoever shows them. Main thread. Choosing an action closes the alert or
/// sheet first and then runs its handler.
class Presenter {
 public:
    virtual ~Presenter() = default;

    /// The controller at the root of the application's window; null when there is none.
    [[nodiscard]] virtual std::shared_ptr<ScreenController> rootController() = 0;

    /// Shows `screen` over `over`, or over everything when `over` is null.
    virtual void present(std::shared_ptr<ScreenController> screen, ScreenController* over) = 0;
    /// Shows `screen` in the stack that `from` is in.
    virtual void push(std::shared_ptr<ScreenController> screen, ScreenController& from) = 0;
    /// Takes `screen` out of its stack.
    virtual void pop(ScreenController& screen) = 0;
    /// Takes away `screen`, however it came to be shown.
    virtual void dismiss(ScreenController& screen) = 0;

    virtual void showAlert(Alert alert) = 0;
    virtual void showSheet(ActionSheet sheet) = 0;
};

/// The overlay that tells what is going on. One text shows at a time. Main thread.
class Progress {
 public:
    virtual ~Progress() = default;

    /// Stays until dismissed or replaced.
    virtual void showStatus(const std::string& text) = 0;
    /// These go by themselves, after the minimum display time at the earliest.
    virtual void showError(const std::string& text) = 0;
    virtual void showInfo(const std::string& text) = 0;
    virtual void showSuccess(const std::string& text) = 0;
    virtual void dismiss() = 0;
    virtual void dismissAfter(std::chrono::milliseconds delay) = 0;

    virtual void setMinimumDisplayTime(std::chrono::milliseconds time) = 0;
    virtual void setDarkStyle(bool dark) = 0;
};

/// How the system wants screens to look. Main thread.
class Traits {
 public:
    virtual ~Traits() = default;

    /// Whether the system asks for a dark look, now.
    [[nodiscard]] virtual bool darkMode() const = 0;

    /// The system's own colour of that name ("labelColor", "systemBackgroundColor"), for the look
    /// of this moment; nothing when it has none.
    [[nodiscard]] virtual std::optional<Color> systemColor(const std::string& name) const {
        (void)name;
        return std::nullopt;
    }

    /// Runs `changed` whenever the answers above may differ, until the result is dropped.
    [[nodiscard]] virtual Registration observe(std::function<void()> changed) = 0;
};

/// Colours that all of the kit's bars and controls start from; null is the toolkit's own. Main
/// thread.
class GlobalAppearance {
 public:
    virtual ~GlobalAppearance() = default;

    virtual void setNavigationBarTranslucent(bool translucent) = 0;
    /// Of the texts and icons in navigation bars.
    virtual void setNavigationBarTintColor(const std::optional<Color>& color) = 0;
    /// Of the bars themselves.
    virtual void setNavigationBarBarTintColor(const std::optional<Color>& color) = 0;
    /// Of buttons and segmented controls.
    virtual void setControlTintColor(const std::optional<Color>& color) = 0;
};

}  // namespace supportsdk
