#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// Codes of QDFieldModel::type that the kit itself asks about. 0 is a name that it does not know.
namespace fieldCode {
inline constexpr std::int64_t text = 1;
inline constexpr std::int64_t picker = 3;
inline constexpr std::int64_t toggle = 4;
inline constexpr std::int64_t textArea = 6;
inline constexpr std::int64_t number = 10;
inline constexpr std::int64_t title = 11;
inline constexpr std::int64_t checkbox = 18;
inline constexpr std::int64_t hiddenText = 21;
}  // namespace fieldCode

/// One field of a form: its definition and its value. Values are any JSON; the JSON null object is
/// a value, unlike an absent one. A plain record: main thread only.
class SUPPORTSDK_API QDFieldModel {
 public:
    QDFieldModel() = default;
    /// A field made in code. Without `rootKey`, `key` stands in for it; `label` is shown as it is.
    QDFieldModel(std::optional<std::string> label, std::optional<std::string> key,
                 std::optional<std::string> rootKey, std::optional<Json> value, std::int64_t type);

    /// Empties the field, except `valueOriginal` and `parOp`.
    void clear();
    /// Reads a definition; what is missing or has another type becomes null. `key` becomes
    /// `rootKey`.
    void populateWithDictionary(const Json& dictionary, const std::string& key);
    /// The definition as an object, without the operator.
    [[nodiscard]] Json dict() const;

    /// What was entered and not yet committed, else the committed value.
    [[nodiscard]] const std::optional<Json>& value() const {
        return valueUpdated ? valueUpdated : committedValue;
    }

    // The type of value().
    [[nodiscard]] bool isArray() const;
    [[nodiscard]] bool isNumber() const;
    [[nodiscard]] bool isString() const;

    [[nodiscard]] bool isRequired() const;
    [[nodiscard]] bool hasDescription() const;
    [[nodiscard]] bool hasHelpLink() const;
    /// False for the codes 5 and 13, whatever there is to edit others with.
    [[nodiscard]] bool isFieldEditable() const { return type != 5 && type != 13; }
    /// Whether value() is absent, "" or an empty list. Numbers and the JSON null object are not.
    [[nodiscard]] bool isEmpty() const;
    /// The string or the number as text; "" for anything else.
    [[nodiscard]] std::string stringForValue() const;

    /// Sets `type` from `fieldType`, case-sensitively; 0 for an unknown name.
    void determineFieldType();
    /// The code of an operator such as ">=" or "contains", -1 when there is none of that name.
    static std::int64_t operatorFromString(const std::optional<Json>& text);

    /// Whether this field shows, given that `parent` does. A parent of type 4 commits what was
    /// entered on the way, as a boolean.
    [[nodiscard]] bool determineVisibilityInParent(QDFieldModel& parent) const;

    std::optional<Json> committedValue;
    std::optional<Json> valueUpdated;
    /// The definition's own value.
    std::optional<Json> valueOriginal;

    /// The key of the definition: the identity of the field.
    std::string rootKey;
    /// The `rootKey` of the field that controls this one; null or "" at the top level.
    std::optional<std::string> parentKey;
    std::optional<Json> parentValue;
    /// -1 when there is none.
    std::int64_t parentOperator = -1;
    /// The operator as received.
    std::optional<Json> parOp;

    std::optional<double> priority;
    std::optional<double> required;
    std::optional<std::string> fieldDescription;
    std::optional<std::string> fieldKb;
    std::optional<std::string> fieldLabel;
    std::optional<std::string> fieldType;
    std::optional<std::string> iconName;
    std::optional<std::string> key;
    std::optional<std::string> keyGroup;
    /// Objects with "label" and "value".
    std::optional<Json> plOptions;
    /// Objects with "id" and "name": they win over plOptions. Never filled from JSON.
    std::optional<Json> choices;
    /// The label, marked when the field is required.
    std::optional<std::string> attrString;
    std::int64_t type = 0;
};

}  // namespace supportsdk
