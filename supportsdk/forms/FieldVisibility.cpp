#include "supportsdk/forms/FieldVisibility.h"

#include <algorithm>
#include <cmath>
#include <compare>
#include <cstring>
#include <limits>
#include <string>

#include "supportsdk/forms/FormValues.h"

namespace supportsdk {

namespace {

using Elements = std::set<Json>;

/// In comparisons true and false are the numbers 1 and 0.
Json comparable(const Json& value) {
    return value.is_boolean() ? Json(lowIntegerOf(value)) : value;
}

Elements elementsOf(const Json& list) {
    Elements elements;
    for (const auto& element : list) elements.insert(comparable(element));
    return elements;
}

/// The parts between commas, blanks kept.
Elements partsOf(const std::string& text) {
    Elements parts;
    std::size_t start = 0;
    for (auto comma = text.find(','); comma != std::string::npos; comma = text.find(',', start)) {
        parts.insert(text.substr(start, comma - start));
        start = comma + 1;
    }
    parts.insert(text.substr(start));
    return parts;
}

bool isSubset(const Elements& some, const Elements& all) {
    return some.size() <= all.size() &&
           std::all_of(some.begin(), some.end(),
                       [&all](const Json& element) { return all.contains(element); });
}

/// memmem() takes linear time on every pair of texts, which std::string::find() does not.
bool hasPart(const std::string& text, const std::string& part) {
    return text.size() <= maximumSearchedBytes &&
           memmem(text.data(), text.size(), part.data(), part.size()) != nullptr;
}

/// Numbers that differ beyond single precision count as equal.
float floatOf(const Json& value) {
    using Limits = std::numeric_limits<float>;
    const auto number = numberOf(value);
    if (!(std::abs(number) > Limits::max())) return static_cast<float>(number);
    return static_cast<float>(std::copysign(Limits::infinity(), number));
}

std::partial_ordering orderOf(const Json& actual, const Json& expected) {
    if (isNumeric(expected) && (isNumeric(actual) || actual.is_string())) {
        return floatOf(actual) <=> floatOf(expected);
    }
    if (expected.is_string() && actual.is_string()) return textOf(actual) <=> textOf(expected);
    return std::partial_ordering::unordered;
}

}  // namespace

bool ParentValue::shows(const QDFieldModel& child) {
    if (child.parentOperator == -1) return showsWithoutOperator(child);
    if (!child.parentValue || !parent_.value()) return false;
    return compare(child.parentOperator, *child.parentValue);
}

bool ParentValue::showsWithoutOperator(const QDFieldModel& child) {
    switch (parent_.type) {
        case fieldCode::toggle:
            return switchIsOn();
        case fieldCode::picker:
            return matchesPicker(child.parentValue);
        case fieldCode::number:
            return parent_.isNumber() && lowIntegerOf(*parent_.value()) > 0;
        default:
            return parent_.type == fieldCode::title;
    }
}

bool ParentValue::switchIsOn() {
    if (parent_.valueUpdated) parent_.committedValue = truthOf(*parent_.valueUpdated);
    return parent_.committedValue && truthOf(*parent_.committedValue);
}

bool ParentValue::matchesPicker(const std::optional<Json>& expected) {
    const auto& actual = parent_.value();
    if (!expected || !actual) return false;
    if (expected->is_array()) {
        return std::any_of(expected->begin(), expected->end(),
                           [this](const Json& element) { return comparable(element) == single(); });
    }
    if (!expected->is_string() || !actual->is_string()) return false;
    if (!lowerCased_) lowerCased_ = lowerCased(textOf(*actual));
    return lowerCased(textOf(*expected)) == *lowerCased_;
}

bool ParentValue::compare(std::int64_t operation, const Json& expected) {
    switch (operation) {
        case 1:
        case 2:
        case 3:
        case 4:
            return orders(operation, expected);
        case 5:
        case 11:
            return equals(expected);
        case 6:
            return !equals(expected);
        case 7:
            return contains(expected);
        case 8:
            return !contains(expected);
        case 9:
            return liesIn(expected);
        case 10:
            return !liesIn(expected);
        default:
            return false;
    }
}

bool ParentValue::orders(std::int64_t operation, const Json& expected) const {
    const auto order = orderOf(*parent_.value(), expected);
    switch (operation) {
        case 1:
            return std::is_gt(order);
        case 2:
            return std::is_gteq(order);
        case 3:
            return std::is_lt(order);
        default:
            return std::is_lteq(order);
    }
}

bool ParentValue::equals(const Json& expected) {
    const auto& actual = *parent_.value();
    if (isNumeric(expected)) return std::is_eq(orderOf(actual, expected));
    if (expected.is_string()) {
        if (actual.is_string()) return actual == expected;
        return actual.is_array() && elements() == partsOf(textOf(expected));
    }
    if (!expected.is_array()) return false;
    const auto wanted = elementsOf(expected);
    if (actual.is_array()) return wanted == elements();
    return wanted.size() == 1 && *wanted.begin() == single();
}

bool ParentValue::contains(const Json& expected) {
    const auto& actual = *parent_.value();
    if (expected.is_string()) {
        if (actual.is_string()) return hasPart(textOf(actual), textOf(expected));
        return actual.is_array() && isSubset(partsOf(textOf(expected)), elements());
    }
    if (!expected.is_array()) return false;
    const auto wanted = elementsOf(expected);
    if (actual.is_array()) return isSubset(wanted, elements());
    return wanted.empty() || (wanted.size() == 1 && *wanted.begin() == single());
}

bool ParentValue::liesIn(const Json& expected) {
    const auto& actual = *parent_.value();
    if (expected.is_string()) {
        if (actual.is_string()) return hasPart(textOf(expected), textOf(actual));
        return actual.is_array() && isSubset(elements(), partsOf(textOf(expected)));
    }
    if (!expected.is_array()) return false;
    const auto allowed = elementsOf(expected);
    if (actual.is_array()) return isSubset(elements(), allowed);
    return allowed.contains(single());
}

const Json& ParentValue::single() {
    if (!single_) single_ = comparable(*parent_.value());
    return *single_;
}

const ParentValue::Elements& ParentValue::elements() {
    if (!elements_) elements_ = elementsOf(*parent_.value());
    return *elements_;
}

}  // namespace supportsdk
