#include "supportsdk/forms/QDFieldViewModel.h"

#include <algorithm>
#include <utility>

#include "supportsdk/core/Fields.h"
#include "supportsdk/core/TextNumbers.h"
#include "supportsdk/forms/FormValues.h"

namespace supportsdk {

namespace {

constexpr std::string_view plainRow = "FormCell";
constexpr std::string_view checkboxRow = "CheckboxFormCell";
constexpr std::string_view pickerRow = "PickerFormCell";
constexpr std::string_view switchRow = "SwitchFormCell";
constexpr std::string_view textFieldRow = "TextFieldFormCell";
constexpr std::string_view textViewRow = "TextViewFormCell";

constexpr std::int64_t currency = 19;

/// The row whose control this kit has for the field; "" when it has none. Amounts, dates, photos,
/// ranges, sliders and durations are shown as they are.
std::string_view controlOf(const QDFieldModel& field) {
    if (field.type == currency || !field.isFieldEditable()) return {};
    const auto row = QDFieldViewModel::identifierForType(field.type);
    const bool isPicker = row == pickerRow && field.type == fieldCode::picker;
    const bool isKnown = isPicker || row == textFieldRow || row == textViewRow ||
                         row == switchRow || row == checkboxRow;
    return isKnown ? row : std::string_view();
}

bool isTextRow(std::string_view row) {
    return row == textFieldRow || row == textViewRow;
}

std::vector<FormOption> readOptions(const Json& list, const char* valueKey, const char* labelKey) {
    std::vector<FormOption> options;
    for (const auto& entry : list) {
        if (const auto* value = valueForKey(entry, valueKey))
            options.push_back({*value, stringForKey(entry, labelKey).value_or("")});
    }
    return options;
}

/// The label of the chosen option, "" when the value is none of them.
std::string chosenLabel(const QDFieldModel& field) {
    for (const auto& option : QDFieldViewModel::options(field)) {
        if (field.value() == option.value) return option.label;
    }
    return "";
}

}  // namespace

QDFieldViewModel::QDFieldViewModel(std::shared_ptr<QDFormModel> form) : formModel(std::move(form)) {
    formModel->sortFields();
    formModel->determineVisibleFields();
}

QDFieldViewModel::~QDFieldViewModel() = default;

FormRow QDFieldViewModel::row(std::size_t index) const {
    FormRow row;
    row.field = formModel->fields.at(index);
    const auto& field = *row.field;
    row.identifier = identifierForType(field.type);
    row.isRequired = field.isRequired();
    row.label = localized(field.fieldLabel.value_or("")) + (row.isRequired ? " *" : "");
    row.description = field.fieldDescription.value_or("");
    row.isEditable = isEditable && !controlOf(field).empty();
    row.text = controlText(field);
    row.isOn = field.type == fieldCode::checkbox ? checked_.contains(&field)
                                                 : field.value() && truthOf(*field.value());
    return row;
}

std::string_view QDFieldViewModel::identifierForType(std::int64_t type) {
    switch (type) {
        case fieldCode::text:
        case 7:
        case 8:
        case 9:
        case fieldCode::number:
        case currency:
            return textFieldRow;
        case fieldCode::picker:
        case 14:
        case 15:
            return pickerRow;
        case fieldCode::toggle:
            return switchRow;
        case 5:
        case 20:
            return "ImageFormCell";
        case fieldCode::textArea:
            return textViewRow;
        case 17:
            return "SignatureFormCell";
        case fieldCode::checkbox:
            return checkboxRow;
        case 22:
            return "SliderFormCell";
        case 24:
        case 25:
        case 26:
            return "RangeFormCell";
        case 27:
            return "DurationFormCell";
        default:
            return plainRow;
    }
}

bool QDFieldViewModel::accepts(const QDFieldModel& field, std::string_view identifier) const {
    return isEditable && controlOf(field) == identifier;
}

std::string QDFieldViewModel::controlText(const QDFieldModel& field) const {
    if (const auto typed = typed_.find(&field); typed != typed_.end()) return typed->second;
    return field.type == fieldCode::picker ? chosenLabel(field) : field.stringForValue();
}

bool QDFieldViewModel::changeText(const QDFieldModel& field, const std::string& text) {
    if (!isEditable || !isTextRow(controlOf(field))) return false;
    typed_[&field] = text;
    return true;
}

bool QDFieldViewModel::endEditing(QDFieldModel& field) {
    const auto typed = typed_.extract(&field);
    if (!typed || !isEditable) return false;
    const auto& text = typed.mapped();
    if (text == field.stringForValue()) return true;
    const bool staysNumber = field.type != fieldCode::textArea && field.isNumber();
    update(field, staysNumber ? Json(integerOfText(text)) : Json(text));
    formDidChangeSelection();
    return true;
}

bool QDFieldViewModel::enterText(QDFieldModel& field, const std::string& text) {
    return changeText(field, text) && endEditing(field);
}

bool QDFieldViewModel::setSwitch(QDFieldModel& field, bool on) {
    if (!accepts(field, switchRow)) return false;
    field.valueUpdated = on;
    // Also when rows do not commit: children depend on it.
    field.committedValue = on;
    formDidChangeSelection();
    return true;
}

bool QDFieldViewModel::toggleCheckbox(const QDFieldModel& field) {
    if (!accepts(field, checkboxRow)) return false;
    if (!checked_.erase(&field)) checked_.insert(&field);
    formDidChangeSelection();
    return true;
}

std::vector<FormOption> QDFieldViewModel::options(const QDFieldModel& field) {
    if (field.choices && field.choices->is_array() && !field.choices->empty())
        return readOptions(*field.choices, "id", "name");
    if (field.plOptions && field.plOptions->is_array())
        return readOptions(*field.plOptions, "value", "label");
    return {};
}

std::vector<FormOption> QDFieldViewModel::openPicker(const QDFieldModel& field) const {
    if (!accepts(field, pickerRow)) return {};
    auto found = options(field);
    if (found.empty() && platform)
        platform->progress->showInfo(localized("No selections available."));
    return found;
}

bool QDFieldViewModel::selectOption(QDFieldModel& field, std::size_t option) {
    if (!accepts(field, pickerRow)) return false;
    auto found = openPicker(field);
    if (option >= found.size()) return false;
    update(field, std::move(found[option].value));
    formDidChangeSelection();
    return true;
}

void QDFieldViewModel::update(QDFieldModel& field, Json value) {
    field.valueUpdated = std::move(value);
    if (updateInline) field.committedValue = field.valueUpdated;
}

void QDFieldViewModel::formDidChangeSelection() {
    formModel->determineVisibleFields();
    if (const auto told = delegate.lock()) told->formDidChangeSelection();
}

void QDFieldViewModel::save() {
    for (const auto& field : formModel->fields) {
        const auto row = controlOf(*field);
        if (row == switchRow) {
            field->committedValue = field->value() && truthOf(*field->value());
        } else if (row == textViewRow) {
            field->committedValue = controlText(*field);
        } else if (row == textFieldRow && field->type != fieldCode::number) {
            auto text = controlText(*field);
            field->committedValue =
                field->isNumber() ? Json(integerOfText(text) != 0) : Json(std::move(text));
        } else if (row == pickerRow && field->valueUpdated) {
            field->committedValue = field->valueUpdated;
        }
    }
}

std::shared_ptr<QDFieldModel> QDFieldViewModel::fieldWithoutControl() const {
    const auto found =
        std::find_if(formModel->fields.begin(), formModel->fields.end(), [](const auto& field) {
            return field->isRequired() && field->isEmpty() && field->type != fieldCode::title &&
                   controlOf(*field).empty();
        });
    return found == formModel->fields.end() ? nullptr : *found;
}

std::string QDFieldViewModel::localized(const std::string& text) const {
    return platform ? platform->localizer->localized(text) : text;
}

}  // namespace supportsdk
