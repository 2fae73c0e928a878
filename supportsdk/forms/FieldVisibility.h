#pragma once

#include <cstddef>
#include <optional>
#include <set>

#include "supportsdk/forms/QDFieldModel.h"

namespace supportsdk {

/// Nothing lies in a longer text. None as long is entered on a screen, and a hostile form must not
/// have megabytes searched once for each of its fields.
inline constexpr std::size_t maximumSearchedBytes = std::size_t{16} * 1024;

/// The value of a field that controls others. Prepared once, so that many children cost no more
/// than their own sizes.
class ParentValue {
 public:
    explicit ParentValue(QDFieldModel& parent) : parent_(parent) {}

    /// Whether `child` shows, given that the parent does. Commits what was entered into a switch
    /// when the child has no operator.
    bool shows(const QDFieldModel& child);

 private:
    using Elements = std::set<Json>;

    bool showsWithoutOperator(const QDFieldModel& child);
    bool switchIsOn();
    bool matchesPicker(const std::optional<Json>& expected);
    bool compare(std::int64_t operation, const Json& expected);
    [[nodiscard]] bool orders(std::int64_t operation, const Json& expected) const;
    bool equals(const Json& expected);
    bool contains(const Json& expected);
    bool liesIn(const Json& expected);
    /// The value as it is compared with others.
    const Json& single();
    /// Of a value that is a list.
    const Elements& elements();

    QDFieldModel& parent_;
    std::optional<Json> single_;
    std::optional<Elements> elements_;
    std::optional<std::string> lowerCased_;
};

}  // namespace supportsdk
