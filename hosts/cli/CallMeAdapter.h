#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "hosts/cli/DialogAdapter.h"
#include "supportsdk/launcher/CallMeViewController.h"

namespace supportsdk::host {

/// The dialog that asks for a call: a telephone number above the description.
class CallMeAdapter : public DialogAdapter, public CallMeViewController::View {
 public:
    CallMeAdapter(std::shared_ptr<CallMeViewController> dialog, std::function<void()> reloaded)
        : DialogAdapter(dialog, std::move(reloaded)), dialog_(std::move(dialog)) {}

    /// Into the number, which has the focus, or the named field.
    bool type(const std::string& text, const std::optional<std::string>& field) override;

    void okButtonDidChange(bool) override { reload(); }

 protected:
    [[nodiscard]] std::string heading() const override { return dialog_->callMeLabel; }
    [[nodiscard]] Json ownFields() const override;

 private:
    const std::shared_ptr<CallMeViewController> dialog_;
};

}  // namespace supportsdk::host
