#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "hosts/cli/ScreenAdapter.h"
#include "supportsdk/core/SettingsViewController.h"

namespace supportsdk::host {

/// The developer's settings: sections of rows and, at times, the picker of servers, whose entries
/// and buttons are pressed.
class SettingsAdapter : public ScreenAdapter, public SettingsViewController::View {
 public:
    SettingsAdapter(std::shared_ptr<SettingsViewController> settings,
                    std::function<void()> reloaded);

    bool select(std::size_t section, std::size_t row) override;

    void reloadTable() override { reloaded_(); }
    void showServerPicker(const std::vector<std::string>& names) override;
    void removeServerPicker() override;

 protected:
    [[nodiscard]] Json state() const override;
    bool pressControl(const std::string& label) override;

 private:
    std::shared_ptr<SettingsViewController> settings_;
    std::function<void()> reloaded_;
    /// Empty while there is no picker.
    std::vector<std::string> servers_;
};

}  // namespace supportsdk::host
