#include "supportsdk/forms/QDFieldModel.h"

#include <array>
#include <cmath>
#include <utility>

#include "supportsdk/core/Fields.h"
#include "supportsdk/forms/FieldVisibility.h"
#include "supportsdk/forms/FormValues.h"

namespace supportsdk {

namespace {

using Name = std::pair<std::string_view, std::int64_t>;

constexpr std::array<Name, 21> typeNames{{
    {"text", fieldCode::text},
    {"textarea", fieldCode::textArea},
    {"switch", fieldCode::toggle},
    {"boolean", fieldCode::toggle},
    {"picker", fieldCode::picker},
    {"list", fieldCode::picker},
    {"picklist", fieldCode::picker},
    {"picklist-single", fieldCode::picker},
    {"picklist-products", fieldCode::picker},
    {"radiogroup", fieldCode::picker},
    {"select", fieldCode::picker},
    {"datetime", 15},
    {"number", fieldCode::number},
    {"currency", 19},
    {"title", fieldCode::title},
    {"signature", 17},
    {"line", 23},
    {"filefield", 20},
    {"hidden_text", fieldCode::hiddenText},
    {"slider", 22},
    {"durationfield", 27},
}};

constexpr std::array<Name, 15> operators{{
    {">", 1},
    {"=>", 2},
    {">=", 2},
    {"<", 3},
    {"=<", 4},
    {"<=", 4},
    {"=", 5},
    {"==", 5},
    {"<>", 6},
    {"=!", 6},
    {"!=", 6},
    {"contains", 7},
    {"!contains", 8},
    {"in", 9},
    {"!in", 10},
}};

template <std::size_t n>
std::int64_t codeOf(const std::array<Name, n>& names, std::string_view name, std::int64_t none) {
    for (const auto& [known, code] : names) {
        if (known == name) return code;
    }
    return none;
}

std::string_view withoutBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::optional<Json> copyOf(const Json* value) {
    return value ? std::optional(*value) : std::nullopt;
}

template <typename Value>
void put(Json& dictionary, const char* key, const std::optional<Value>& value) {
    if (value) dictionary[key] = *value;
}

}  // namespace

QDFieldModel::QDFieldModel(std::optional<std::string> label, std::optional<std::string> fieldKey,
                           std::optional<std::string> fieldRootKey, std::optional<Json> fieldValue,
                           std::int64_t code)
    : committedValue(std::move(fieldValue)),
      rootKey(fieldRootKey ? *std::move(fieldRootKey) : fieldKey.value_or("")),
      fieldLabel(std::move(label)),
      key(std::move(fieldKey)),
      type(code) {}

void QDFieldModel::clear() {
    QDFieldModel empty;
    empty.valueOriginal = std::move(valueOriginal);
    empty.parOp = std::move(parOp);
    *this = std::move(empty);
}

void QDFieldModel::populateWithDictionary(const Json& dictionary, const std::string& fieldKey) {
    rootKey = fieldKey;
    parentKey = stringForKey(dictionary, "parentKey");
    parentValue = copyOf(valueForKey(dictionary, "parentValue"));
    parOp = copyOf(valueForKey(dictionary, "parentOperator"));
    priority = numberForKey(dictionary, "priority");
    required = numberForKey(dictionary, "required");
    fieldDescription = stringForKey(dictionary, "fieldDescription");
    fieldKb = stringForKey(dictionary, "fieldKb");
    fieldLabel = stringForKey(dictionary, "fieldLabel");
    fieldType = stringForKey(dictionary, "fieldType");
    iconName = stringForKey(dictionary, "iconName");
    key = stringForKey(dictionary, "key");
    keyGroup = stringForKey(dictionary, "keyGroup");
    committedValue = copyOf(valueForKey(dictionary, "value"));
    valueOriginal = committedValue;
    attrString = isRequired() ? fieldLabel.value_or("") + " *" : fieldLabel;
    plOptions = arrayForKey(dictionary, "plOptions");
    determineFieldType();
    parentOperator = operatorFromString(parOp);
}

Json QDFieldModel::dict() const {
    Json dictionary = {{"rootKey", rootKey}};
    put(dictionary, "parentKey", parentKey);
    put(dictionary, "parentValue", parentValue);
    put(dictionary, "priority", priority);
    put(dictionary, "required", required);
    put(dictionary, "fieldDescription", fieldDescription);
    put(dictionary, "fieldKb", fieldKb);
    put(dictionary, "fieldLabel", fieldLabel);
    put(dictionary, "fieldType", fieldType);
    put(dictionary, "iconName", iconName);
    put(dictionary, "key", key);
    put(dictionary, "keyGroup", keyGroup);
    dictionary["plOptions"] = plOptions && !plOptions->is_null() ? *plOptions : Json("");
    dictionary["value"] = value().value_or("");
    return dictionary;
}

bool QDFieldModel::isArray() const {
    return value() && value()->is_array();
}

bool QDFieldModel::isNumber() const {
    return value() && isNumeric(*value());
}

bool QDFieldModel::isString() const {
    return value() && value()->is_string();
}

bool QDFieldModel::isRequired() const {
    return required && std::trunc(*required) == 1.0;
}

bool QDFieldModel::hasDescription() const {
    return fieldDescription && !fieldDescription->empty();
}

bool QDFieldModel::hasHelpLink() const {
    return fieldKb && !fieldKb->empty();
}

bool QDFieldModel::isEmpty() const {
    if (!value()) return true;
    if (isString()) return textOf(*value()).empty();
    return isArray() && value()->empty();
}

std::string QDFieldModel::stringForValue() const {
    return value() ? decimalText(*value()) : "";
}

void QDFieldModel::determineFieldType() {
    type = codeOf(typeNames, fieldType.value_or(""), 0);
}

std::int64_t QDFieldModel::operatorFromString(const std::optional<Json>& text) {
    if (!text || !text->is_string()) return -1;
    const auto name = withoutBlanks(textOf(*text));
    return codeOf(operators, lowerCased(std::string(name)), -1);
}

bool QDFieldModel::determineVisibilityInParent(QDFieldModel& parent) const {
    return ParentValue(parent).shows(*this);
}

}  // namespace supportsdk
