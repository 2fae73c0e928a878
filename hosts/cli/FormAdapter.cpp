#include "hosts/cli/FormAdapter.h"

namespace supportsdk::host {

namespace {

bool isSwitch(const QDFieldModel& field) {
    return field.type == fieldCode::toggle || field.type == fieldCode::checkbox;
}

Json describeRow(const FormRow& row) {
    Json fields = {{"label", row.label},
                   {"type", row.field->fieldType.value_or("")},
                   {"required", row.isRequired},
                   {"editable", row.isEditable}};
    fields["value"] = isSwitch(*row.field) ? Json(row.isOn) : Json(row.text);
    if (!row.description.empty()) fields["description"] = row.description;
    for (const auto& option : QDFieldViewModel::options(*row.field)) {
        fields["choices"].push_back(option.label);
    }
    return fields;
}

}  // namespace

Json FormAdapter::state() const {
    const auto& rows = *form_->viewModel;
    Json fields = Json::array();
    for (std::size_t index = 0; index < rows.numberOfRows(); ++index) {
        fields.push_back(describeRow(rows.row(index)));
    }
    return {{"fields", std::move(fields)}, {"saveShown", !form_->rightBarButtons.empty()}};
}

std::optional<FormRow> FormAdapter::rowOf(const std::string& label) const {
    const auto& rows = *form_->viewModel;
    for (std::size_t index = 0; index < rows.numberOfRows(); ++index) {
        auto row = rows.row(index);
        if (row.label == label || row.label == label + " *") return row;
    }
    return std::nullopt;
}

bool FormAdapter::type(const std::string& text, const std::optional<std::string>& field) {
    const auto row = field ? rowOf(*field) : std::nullopt;
    return row && form_->viewModel->enterText(*row->field, text);
}

bool FormAdapter::set(const std::string& field, const Json& value) {
    const auto row = rowOf(field);
    if (!row) return false;
    auto& rows = *form_->viewModel;
    if (const auto* on = value.get_ptr<const bool*>()) {
        if (row->field->type != fieldCode::checkbox) return rows.setSwitch(*row->field, *on);
        return row->isOn == *on || rows.toggleCheckbox(*row->field);
    }
    const auto* choice = value.get_ptr<const std::string*>();
    const auto options = rows.openPicker(*row->field);
    for (std::size_t index = 0; choice && index < options.size(); ++index) {
        if (options[index].label == *choice) return rows.selectOption(*row->field, index);
    }
    return false;
}

}  // namespace supportsdk::host
