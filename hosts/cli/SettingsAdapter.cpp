#include "hosts/cli/SettingsAdapter.h"

#include <algorithm>

namespace supportsdk::host {

SettingsAdapter::SettingsAdapter(std::shared_ptr<SettingsViewController> settings,
                                 std::function<void()> reloaded)
    : ScreenAdapter(settings), settings_(std::move(settings)), reloaded_(std::move(reloaded)) {}

Json SettingsAdapter::state() const {
    Json fields = {{"sections", Json::array()}};
    for (std::size_t section = 0; section < settings_->numberOfSections(); ++section) {
        Json shown = {{"rows", Json::array()}};
        if (auto heading = settings_->headerOfSection(section); !heading.empty()) {
            shown["heading"] = std::move(heading);
        }
        for (std::size_t row = 0; row < settings_->numberOfRows(section); ++row) {
            shown["rows"].push_back({{"label", settings_->textOfRow(section, row)}});
        }
        fields["sections"].push_back(std::move(shown));
    }
    if (!servers_.empty()) fields["picker"] = {{"entries", servers_}};
    if (const auto& server = settings_->selectedServer; server && !servers_.empty()) {
        fields["picker"]["selected"] = *server;
    }
    return fields;
}

bool SettingsAdapter::select(std::size_t section, std::size_t row) {
    if (section >= settings_->numberOfSections() || row >= settings_->numberOfRows(section)) {
        return false;
    }
    settings_->didSelectRow(section, row);
    return true;
}

void SettingsAdapter::showServerPicker(const std::vector<std::string>& names) {
    servers_ = names;
    reloaded_();
}

void SettingsAdapter::removeServerPicker() {
    servers_.clear();
    reloaded_();
}

bool SettingsAdapter::pressControl(const std::string& label) {
    if (servers_.empty()) return false;
    if (label == "Done") {
        settings_->didFinishPicker();
    } else if (label == "Cancel") {
        settings_->didCancelPicker();
    } else if (std::find(servers_.begin(), servers_.end(), label) != servers_.end()) {
        settings_->didMovePicker(label);
    } else {
        return false;
    }
    return true;
}

}  // namespace supportsdk::host
