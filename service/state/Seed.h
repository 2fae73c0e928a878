#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "service/state/Store.h"

namespace supportsdk::service {

/// The seed that is built in.
std::string_view defaultSeed();

/// Reads a seed: an object with a list of records for each of "integrations", "technicians",
/// "customers", "articles", "forms", "journeys" and "issues". On failure nothing, and why in
/// `problem`.
std::optional<Json> readSeed(std::string_view text, std::string& problem);

/// Puts all records into an empty store. The "transcript" of a past issue becomes the lines of its
/// chat.
void plantSeed(const Json& seed, Store& store);

}  // namespace supportsdk::service
