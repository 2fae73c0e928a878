#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "hosts/cli/ScreenAdapter.h"
#include "supportsdk/launcher/DialogViewController.h"

namespace supportsdk::host {

/// What all dialogs have: a heading, a description, "Cancel" and a button that submits.
class DialogAdapter : public ScreenAdapter {
 public:
    DialogAdapter(std::shared_ptr<DialogViewController> dialog, std::function<void()> reloaded)
        : ScreenAdapter(dialog), dialog_(std::move(dialog)), reloaded_(std::move(reloaded)) {}

    /// Into the description, by its label or its placeholder.
    bool type(const std::string& text, const std::optional<std::string>& field) override;

 protected:
    [[nodiscard]] Json state() const override;
    bool pressControl(const std::string& label) override;

    [[nodiscard]] virtual std::string heading() const = 0;
    /// Fields above the description.
    [[nodiscard]] virtual Json ownFields() const { return Json::array(); }
    void reload() const { reloaded_(); }

 private:
    const std::shared_ptr<DialogViewController> dialog_;
    const std::function<void()> reloaded_;
};

}  // namespace supportsdk::host
