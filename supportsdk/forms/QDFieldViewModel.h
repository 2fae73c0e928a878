#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "supportsdk/forms/FormDelegate.h"
#include "supportsdk/forms/QDFormModel.h"
#include "supportsdk/platform/Platform.h"

namespace supportsdk {

/// One choice of a picker.
struct FormOption {
    Json value;
    std::string label;
};

/// What a row shows.
struct FormRow {
    std::shared_ptr<QDFieldModel> field;
    /// The kind of row, such as "TextFieldFormCell".
    std::string_view identifier;
    /// Translated, with " *" behind it for a required field.
    std::string label;
    /// "" for none.
    std::string description;
    bool isRequired = false;
    /// False also for kinds that have no control yet: they show their value and keep it.
    bool isEditable = false;
    /// What the control shows: a text, the label of the chosen option, or "".
    std::string text;
    /// Of a switch or a checkbox.
    bool isOn = false;
};

/// The rows of a form, and what their controls do. Edits return whether they were accepted: the
/// form is editable, and the field has a control of that kind. Main thread only.
class SUPPORTSDK_API QDFieldViewModel {
 public:
    /// Sorts the form and hides what does not show.
    explicit QDFieldViewModel(std::shared_ptr<QDFormModel> form);
    virtual ~QDFieldViewModel();
    QDFieldViewModel(const QDFieldViewModel&) = delete;
    QDFieldViewModel& operator=(const QDFieldViewModel&) = delete;

    [[nodiscard]] std::size_t numberOfRows() const { return formModel->fields.size(); }
    /// The row at `index`, which must be below numberOfRows().
    [[nodiscard]] FormRow row(std::size_t index) const;
    static std::string_view identifierForType(std::int64_t type);

    /// The text in a field's control while it is being edited. A screen ends editing before
    /// anything else takes the focus.
    bool changeText(const QDFieldModel& field, const std::string& text);
    /// Takes over the text of the control; one that changes nothing is not told to the delegate. A
    /// field that held a number gets a 32-bit number.
    bool endEditing(QDFieldModel& field);
    /// Both of the above.
    bool enterText(QDFieldModel& field, const std::string& text);
    /// Commits at once.
    bool setSwitch(QDFieldModel& field, bool on);
    /// Flips a checkbox, which has no value.
    bool toggleCheckbox(const QDFieldModel& field);
    /// The choices of a picker, those without a value left out.
    [[nodiscard]] static std::vector<FormOption> options(const QDFieldModel& field);
    /// Asks for the choices, and tells the person when there are none.
    std::vector<FormOption> openPicker(const QDFieldModel& field) const;
    bool selectOption(QDFieldModel& field, std::size_t option);

    /// Determines the visible fields and tells the delegate.
    void formDidChangeSelection();
    /// Reads the controls of the visible fields back into their values. A text field that holds a
    /// number gets a boolean: whether the integer in its text is not 0.
    virtual void save();

    /// Why the form cannot be completed here: the first visible required field that is empty and
    /// has no control. Null when there is none.
    [[nodiscard]] std::shared_ptr<QDFieldModel> fieldWithoutControl() const;

    const std::shared_ptr<QDFormModel> formModel;
    std::weak_ptr<FormDelegate> delegate;
    /// Set by the screen. Without it labels are not translated.
    PlatformPtr platform;
    /// Rows commit each change at once.
    bool updateInline = false;
    bool isEditable = false;
    bool isSideBySideLayout = false;
    double rowHeight = 40.0;
    /// The share of a row's width that its label gets.
    double labelScreenPercentage = 0.4;

 private:
    [[nodiscard]] bool accepts(const QDFieldModel& field, std::string_view identifier) const;
    [[nodiscard]] std::string controlText(const QDFieldModel& field) const;
    void update(QDFieldModel& field, Json value);
    [[nodiscard]] std::string localized(const std::string& text) const;

    /// Texts of controls whose editing has not ended.
    std::unordered_map<const QDFieldModel*, std::string> typed_;
    std::unordered_set<const QDFieldModel*> checked_;
};

}  // namespace supportsdk
