#include <algorithm>
#include <array>

#include "supportsdk/core/DefaultsKeys.h"
#include "supportsdk/forms/QDFieldModel.h"
#include "supportsdk/launcher/HistoryViewController.h"
#include "supportsdk/theme/Appearance.h"

namespace supportsdk {

namespace {

struct Switch {
    const char* key;
    const char* label;
    bool HistoryViewModel::*value;
};

/// In the order of the menu.
constexpr std::array switches{
    Switch{defaultsKey::historySortDescending, "Sort Descending",
           &HistoryViewModel::sortDescending},
    Switch{defaultsKey::historyShowOpen, "Open", &HistoryViewModel::showOpen},
    Switch{defaultsKey::historyShowResolved, "Resolved", &HistoryViewModel::showResolved},
    Switch{defaultsKey::historyShowClosed, "Closed", &HistoryViewModel::showClosed},
};

void loadSwitches(HistoryViewModel& model, const UserDefaults& defaults) {
    for (const auto& one : switches)
        model.*one.value = !defaults.value(one.key) || defaults.boolean(one.key);
}

void saveSwitches(const HistoryViewModel& model, UserDefaults& defaults) {
    for (const auto& one : switches) defaults.setValue(one.key, model.*one.value);
    defaults.flush();
}

}  // namespace

void HistoryViewController::loadActionSettings() {
    const auto& model = support->historyViewModel;
    if (model) loadSwitches(*model, *support->platform->userDefaults->standard());
}

void HistoryViewController::saveActionSettings() {
    const auto& model = support->historyViewModel;
    if (model) saveSwitches(*model, *support->platform->userDefaults->standard());
}

/// Support's model. Before the first answer there is none, but the person may choose already: then
/// one that has the stored switches and nothing else.
std::shared_ptr<HistoryViewModel> HistoryViewController::modelWithSwitches() const {
    if (support->historyViewModel) return support->historyViewModel;
    auto model = std::make_shared<HistoryViewModel>(support->platform->clock, support->appearance,
                                                    HistoryViewModel::Issues{});
    loadSwitches(*model, *support->platform->userDefaults->standard());
    return model;
}

HistoryViewController::Fields HistoryViewController::createActionMenuEntries() {
    loadActionSettings();
    const auto model = modelWithSwitches();
    Fields entries;
    for (const auto& one : switches) {
        const auto value = (*model).*one.value ? 1 : 0;
        entries.push_back(std::make_shared<QDFieldModel>(one.label, std::nullopt, std::nullopt,
                                                         value, fieldCode::checkbox));
    }
    return entries;
}

void HistoryViewController::showActionMenu(const BarButton* sender) {
    if (!sender) return;
    const auto menu = HistoryActionPopupMenu::create(support, createActionMenuEntries(), self());
    menu->backgroundColor = support->appearance->systemBackgroundColor;
    support->platform->presenter->present(menu, this);
}

void HistoryViewController::menuDidUpdateEntries(HistoryActionPopupMenu& /*menu*/,
                                                 const Fields& entries) {
    const auto model = modelWithSwitches();
    for (std::size_t i = 0; i < std::min(entries.size(), switches.size()); ++i) {
        const auto isOn = entries[i] ? HistoryActionPopupMenu::isOn(*entries[i]) : std::nullopt;
        if (isOn) (*model).*switches.at(i).value = *isOn;
    }
    saveSwitches(*model, *support->platform->userDefaults->standard());
    model->sort();
    reloadTable();
}

}  // namespace supportsdk
