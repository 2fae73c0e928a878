#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "hosts/cli/ScreenAdapter.h"
#include "supportsdk/forms/FormViewController.h"

namespace supportsdk::host {

/// A form: its visible fields, which are filled by their labels, and whether it can be saved.
class FormAdapter : public ScreenAdapter, public FormViewController::View {
 public:
    FormAdapter(std::shared_ptr<FormViewController> form, std::function<void()> reloaded)
        : ScreenAdapter(form), form_(std::move(form)), reloaded_(std::move(reloaded)) {}

    bool type(const std::string& text, const std::optional<std::string>& field) override;
    bool set(const std::string& field, const Json& value) override;

    void reloadTable() override { reloaded_(); }

 protected:
    [[nodiscard]] Json state() const override;

 private:
    /// The row with that label, with or without the mark of a required one.
    [[nodiscard]] std::optional<FormRow> rowOf(const std::string& label) const;

    const std::shared_ptr<FormViewController> form_;
    const std::function<void()> reloaded_;
};

}  // namespace supportsdk::host
