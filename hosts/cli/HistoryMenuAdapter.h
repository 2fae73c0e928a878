#pragma once

#include <functional>
#include <memory>
#include <string>

#include "hosts/cli/ScreenAdapter.h"
#include "supportsdk/launcher/HistoryActionPopupMenu.h"

namespace supportsdk::host {

/// The switches of the history.
class HistoryMenuAdapter : public ScreenAdapter, public HistoryActionPopupMenu::View {
 public:
    HistoryMenuAdapter(std::shared_ptr<HistoryActionPopupMenu> menu, std::function<void()> reloaded)
        : ScreenAdapter(menu), menu_(std::move(menu)), reloaded_(std::move(reloaded)) {}

    bool set(const std::string& field, const Json& value) override;

    void reloadTable() override { reloaded_(); }

 protected:
    [[nodiscard]] Json state() const override;

 private:
    const std::shared_ptr<HistoryActionPopupMenu> menu_;
    const std::function<void()> reloaded_;
};

}  // namespace supportsdk::host
