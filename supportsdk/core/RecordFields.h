#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>

#include "supportsdk/core/Fields.h"
#include "supportsdk/core/ObjectDescription.h"

namespace supportsdk {

/// Tables of a record's text fields, and what the records do with them.

/// A text field with its key, which is its name unless a table says otherwise.
template <typename Record>
struct TextField {
    const char* key;
    std::optional<std::string> Record::*member;
};

template <typename Record, std::size_t n>
using TextFields = std::array<TextField<Record>, n>;

template <typename Record, std::size_t n>
void clearTexts(Record& record, const TextFields<Record, n>& fields) {
    for (const auto& field : fields) (record.*field.member).reset();
}

/// A key that is missing, or whose value is no string, leaves its field alone.
template <typename Record, std::size_t n>
void readTexts(Record& record, const Json& dictionary, const TextFields<Record, n>& fields) {
    for (const auto& field : fields) {
        if (auto text = stringForKey(dictionary, field.key)) record.*field.member = std::move(text);
    }
}

/// Writes the fields that are not null.
template <typename Record, std::size_t n>
void writeTexts(const Record& record, Json& dictionary, const TextFields<Record, n>& fields) {
    for (const auto& field : fields) {
        if (const auto& text = record.*field.member) dictionary[field.key] = *text;
    }
}

template <typename Record, std::size_t n>
void describeTexts(const Record& record, PropertyList& properties,
                   const TextFields<Record, n>& fields) {
    for (const auto& field : fields) {
        properties.emplace_back(field.key, debugText(record.*field.member));
    }
}

}  // namespace supportsdk
