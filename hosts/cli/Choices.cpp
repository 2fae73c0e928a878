#include "hosts/cli/Choices.h"

#include <algorithm>

#include "hosts/cli/MenuReport.h"

namespace supportsdk::host {

namespace {

std::vector<std::string> labelsOf(const std::vector<AlertAction>& actions) {
    std::vector<std::string> labels;
    labels.reserve(actions.size());
    for (const auto& action : actions) labels.push_back(action.label);
    return labels;
}

auto takerOf(std::vector<AlertAction> actions) {
    return [actions = std::move(actions)](std::size_t index, const auto& fields) {
        if (actions[index].handler) actions[index].handler(fields);
    };
}

}  // namespace

void Choices::showAlert(Alert alert) {
    Choice choice;
    choice.is = "alert";
    choice.labels = labelsOf(alert.actions);
    for (const auto& field : alert.fields) {
        choice.placeholders.push_back(field.placeholder);
        choice.fields.push_back(field.text);
    }
    Json report = {{"title", alert.title}, {"message", alert.message}, {"buttons", choice.labels}};
    if (!choice.placeholders.empty()) report["fields"] = choice.placeholders;
    choice.describe = [report] { return report; };
    choice.take = takerOf(std::move(alert.actions));
    offer(std::move(choice));
}

void Choices::showSheet(ActionSheet sheet) {
    Choice choice;
    choice.is = "sheet";
    choice.labels = labelsOf(sheet.actions);
    choice.describe = [report = describeSheet(sheet)] { return report; };
    choice.take = takerOf(std::move(sheet.actions));
    offer(std::move(choice));
}

void Choices::showMenu(std::shared_ptr<SupportMenuView> menu) {
    menu->view = weak_from_this();
    Choice choice;
    choice.is = "menu";
    for (const auto& entry : menu->entries) choice.labels.push_back(entry.label);
    choice.describe = [menu] { return describeMenu(*menu); };
    choice.take = [menu](std::size_t index, const auto&) { menu->select(index); };
    choice.menu = std::move(menu);
    offer(std::move(choice));
}

void Choices::offer(Choice choice) {
    open_.push_back(std::move(choice));
    show();
}

void Choices::menuShouldDisappear(SupportMenuView& menu) {
    std::erase_if(open_, [&](const Choice& choice) { return choice.menu.get() == &menu; });
}

void Choices::menuAppearanceDidChange(SupportMenuView& menu) {
    // The button keeps its menu beyond the person's choice.
    const auto isOpen = std::any_of(open_.begin(), open_.end(), [&](const Choice& choice) {
        return choice.menu.get() == &menu;
    });
    if (!isOpen) return;
    auto fields = describeMenu(menu);
    fields["class"] = "SupportMenuView";
    reports_->write("changed", fields);
}

bool Choices::choose(const std::string& label) {
    if (open_.empty()) return false;
    const auto& labels = open_.back().labels;
    const auto found = std::find(labels.begin(), labels.end(), label);
    if (found == labels.end()) return false;
    const auto index = static_cast<std::size_t>(found - labels.begin());
    const auto choice = std::move(open_.back());
    open_.pop_back();
    choice.take(index, choice.fields);
    return true;
}

bool Choices::type(const std::string& text, const std::optional<std::string>& field) {
    if (open_.empty() || open_.back().placeholders.empty()) return false;
    auto& alert = open_.back();
    const auto& placeholders = alert.placeholders;
    const auto found =
        field ? std::find(placeholders.begin(), placeholders.end(), *field) : placeholders.begin();
    if (found == placeholders.end()) return false;
    alert.fields[static_cast<std::size_t>(found - placeholders.begin())] = text;
    return true;
}

bool Choices::show() {
    if (open_.empty()) return false;
    reports_->write(open_.back().is, open_.back().describe());
    return true;
}

}  // namespace supportsdk::host
