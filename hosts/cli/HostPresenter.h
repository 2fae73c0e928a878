#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hosts/cli/Choices.h"
#include "hosts/cli/PacedReport.h"
#include "hosts/cli/Reports.h"
#include "hosts/cli/ScreenAdapter.h"
#include "supportsdk/platform/Screens.h"

namespace supportsdk::host {

/// Shows screens, menus, sheets and alerts as reports, drives the screens' life cycles, and plays
/// the person who acts on them. Screens lie in layers: each presented screen opens one, and pushed
/// ones stack up within it. Main thread.
class HostPresenter : public Presenter, public std::enable_shared_from_this<HostPresenter> {
 public:
    HostPresenter(std::shared_ptr<Reports> reports, std::shared_ptr<MainQueue> queue);
    ~HostPresenter() override;

    // --- For the kit ---

    [[nodiscard]] std::shared_ptr<ScreenController> rootController() override;
    void present(std::shared_ptr<ScreenController> screen, ScreenController* over) override;
    void push(std::shared_ptr<ScreenController> screen, ScreenController& from) override;
    void pop(ScreenController& screen) override;
    void dismiss(ScreenController& screen) override;
    void showAlert(Alert alert) override;
    void showSheet(ActionSheet sheet) override;

    // --- For the host ---

    /// A screen that the kit handed to the host.
    void display(std::shared_ptr<ScreenController> screen);
    /// The system looks different: the screen on top shows itself anew.
    void lookChanged();
    [[nodiscard]] Choices& choices() const { return *choices_; }
    /// Everything goes, from the top.
    void clear();

    // --- The person; false when there is no such thing ---

    bool back();
    /// Reports what is on top again: an alert, sheet or menu, or else the screen.
    bool show();
    /// The screen on top; null when there is none.
    [[nodiscard]] std::shared_ptr<ScreenAdapter> top() const;

 private:
    struct Shown {
        std::shared_ptr<ScreenController> screen;
        std::shared_ptr<ScreenAdapter> adapter;
        std::string how;
        /// It shows itself first when it has appeared; what it reloads before is part of that.
        bool isReported = false;
    };
    struct Layer {
        /// What was presented: a navigation, or a screen without one.
        std::shared_ptr<ScreenController> controller;
        std::vector<Shown> screens;
    };
    struct Place {
        std::size_t layer = 0;
        std::size_t index = 0;
    };
    void add(std::size_t layer, const std::shared_ptr<ScreenController>& screen,
             const std::string& how);
    void removeFrom(std::size_t layer, std::size_t first);
    static void takeScreens(Layer& layer, std::size_t keep, std::vector<Shown>& taken);
    void closeLayer();
    void updateNavigation(std::size_t layer);
    [[nodiscard]] const Shown* topShown() const;
    [[nodiscard]] std::optional<Place> find(const ScreenController& screen) const;
    [[nodiscard]] bool isOnTop(const ScreenController& screen) const;
    void reportNewScreens();
    void reportScreen(const Shown& shown, const std::string& is) const;
    void reloaded(const ScreenController* screen);
    void reportChanged() const;

    const std::shared_ptr<Reports> reports_;
    std::shared_ptr<NavigationController> root_ = std::make_shared<NavigationController>();
    std::vector<Layer> layers_;
    const std::shared_ptr<Choices> choices_;
    PacedReport changes_;
    /// Compared only: it may be gone.
    const ScreenController* changed_ = nullptr;
};

}  // namespace supportsdk::host
