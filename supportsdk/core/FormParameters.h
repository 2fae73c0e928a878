#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// One name and value of a query or form; no value where the parameter was JSON null.
using FormParameter = std::pair<std::string, std::optional<std::string>>;

/// The members of `parameters` in order, as names and texts. Nested values are spread out as
/// "name[member]" and "name[]"; true and false become "1" and "0". Empty unless it is an object.
std::vector<FormParameter> formParameters(const Json& parameters);

/// The same as a URL query (RFC 3986, section 3.4), percent-encoded, without the "?".
std::string queryString(const Json& parameters);

}  // namespace supportsdk
