#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hosts/cli/Reports.h"
#include "hosts/cli/ScreenAdapter.h"
#include "supportsdk/launcher/SupportMenuView.h"
#include "supportsdk/platform/Screens.h"

namespace supportsdk::host {

/// Shows screens, menus, sheets and alerts as reports, drives the screens' life cycles, and plays
/// the person who acts on them. Screens lie in layers: each presented screen opens one, and pushed
/// ones stack up within it. Main thread.
class HostPresenter : public Presenter,
                      public SupportMenuView::View,
                      public std::enable_shared_from_this<HostPresenter> {
 public:
    explicit HostPresenter(std::shared_ptr<Reports> reports);
    ~HostPresenter() override;

    // --- For the kit ---

    [[nodiscard]] std::shared_ptr<ScreenController> rootController() override;
    void present(std::shared_ptr<ScreenController> screen, ScreenController* over) override;
    void push(std::shared_ptr<ScreenController> screen, ScreenController& from) override;
    void pop(ScreenController& screen) override;
    void dismiss(ScreenController& screen) override;
    void showAlert(Alert alert) override;
    void showSheet(ActionSheet sheet) override;
    void menuShouldDisappear(SupportMenuView& menu) override;

    // --- For the host ---

    /// A screen that the kit handed to the host.
    void display(std::shared_ptr<ScreenController> screen);
    void showMenu(std::shared_ptr<SupportMenuView> menu);
    /// Everything goes, from the top.
    void clear();

    // --- The person; false when there is no such thing ---

    /// Takes what has that label in the newest alert, sheet or menu.
    bool choose(const std::string& label);
    /// Fills the field with that placeholder, or the first one, of an open alert.
    bool typeIntoAlert(const std::string& text, const std::optional<std::string>& field);
    bool back();
    bool show();
    /// The screen on top; null when there is none.
    [[nodiscard]] std::shared_ptr<ScreenAdapter> top() const;

 private:
    struct Shown {
        std::shared_ptr<ScreenController> screen;
        std::shared_ptr<ScreenAdapter> adapter;
        std::string how;
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
    /// An alert, sheet or menu that waits for the person.
    struct Choice {
        std::vector<std::string> labels;
        std::vector<std::string> placeholders;
        std::vector<std::string> fields;
        std::function<void(std::size_t index, const std::vector<std::string>& fields)> take;
        /// For menus, which the kit takes away itself.
        std::shared_ptr<SupportMenuView> menu;
    };

    void add(std::size_t layer, const std::shared_ptr<ScreenController>& screen,
             const std::string& how);
    void removeFrom(std::size_t layer, std::size_t first);
    static void takeScreens(Layer& layer, std::size_t keep, std::vector<Shown>& taken);
    void closeLayer();
    void updateNavigation(std::size_t layer);
    [[nodiscard]] const Shown* topShown() const;
    [[nodiscard]] std::optional<Place> find(const ScreenController& screen) const;
    void reportScreen(const Shown& shown, const std::string& is) const;
    void reloaded(const ScreenController* screen) const;
    void offer(Choice choice, const std::vector<AlertAction>& actions);

    std::shared_ptr<Reports> reports_;
    std::shared_ptr<NavigationController> root_ = std::make_shared<NavigationController>();
    std::vector<Layer> layers_;
    std::vector<Choice> choices_;
};

}  // namespace supportsdk::host
