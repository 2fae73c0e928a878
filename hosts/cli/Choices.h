#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hosts/cli/Reports.h"
#include "supportsdk/launcher/SupportMenuView.h"
#include "supportsdk/platform/Screens.h"

namespace supportsdk::host {

/// The alerts, sheets and menus that wait for the person, the newest on top. Main thread.
class Choices : public SupportMenuView::View, public std::enable_shared_from_this<Choices> {
 public:
    explicit Choices(std::shared_ptr<Reports> reports) : reports_(std::move(reports)) {}

    void showAlert(Alert alert);
    void showSheet(ActionSheet sheet);
    void showMenu(std::shared_ptr<SupportMenuView> menu);
    void menuShouldDisappear(SupportMenuView& menu) override;
    void menuAppearanceDidChange(SupportMenuView& menu) override;
    void clear() { open_.clear(); }

    // --- The person; false when there is no such thing ---

    /// Takes what has that label on top.
    bool choose(const std::string& label);
    /// Fills the field with that placeholder, or the first one, of an alert.
    bool type(const std::string& text, const std::optional<std::string>& field);
    /// Reports what is on top again.
    bool show();
    /// It lies over every screen until the person has chosen.
    [[nodiscard]] bool isAlertOpen() const { return !open_.empty() && open_.back().is == "alert"; }

 private:
    struct Choice {
        std::vector<std::string> labels;
        std::vector<std::string> placeholders;
        std::vector<std::string> fields;
        std::function<void(std::size_t index, const std::vector<std::string>& fields)> take;
        std::string is;
        std::function<Json()> describe;
        /// For menus, which the kit takes away itself.
        std::shared_ptr<SupportMenuView> menu;
    };

    void offer(Choice choice);

    std::shared_ptr<Reports> reports_;
    std::vector<Choice> open_;
};

}  // namespace supportsdk::host
