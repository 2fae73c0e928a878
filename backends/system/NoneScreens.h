#pragma once

#include "supportsdk/platform/Screens.h"

namespace supportsdk {

/// Shows nothing and has no window: for hosts without screens, and until the host puts its own in.
/// A screen that is presented is dropped without life-cycle calls; alerts are never answered.
class NonePresenter final : public Presenter {
 public:
    [[nodiscard]] std::shared_ptr<ScreenController> rootController() override { return nullptr; }
    void present(std::shared_ptr<ScreenController>, ScreenController*) override {}
    void push(std::shared_ptr<ScreenController>, ScreenController&) override {}
    void pop(ScreenController&) override {}
    void dismiss(ScreenController&) override {}
    void showAlert(Alert) override {}
    void showSheet(ActionSheet) override {}
};

class NoneProgress final : public Progress {
 public:
    void showStatus(const std::string&) override {}
    void showError(const std::string&) override {}
    void showInfo(const std::string&) override {}
    void showSuccess(const std::string&) override {}
    void dismiss() override {}
    void dismissAfter(std::chrono::milliseconds) override {}
    void setMinimumDisplayTime(std::chrono::milliseconds) override {}
    void setDarkStyle(bool) override {}
};

class NoneGlobalAppearance final : public GlobalAppearance {
 public:
    void setNavigationBarTranslucent(bool) override {}
    void setNavigationBarTintColor(const std::optional<Color>&) override {}
    void setNavigationBarBarTintColor(const std::optional<Color>&) override {}
    void setControlTintColor(const std::optional<Color>&) override {}
};

}  // namespace supportsdk
