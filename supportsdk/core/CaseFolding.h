#pragma once

#include <string>
#include <string_view>

#include "supportsdk/platform/Export.h"

namespace supportsdk {

/// The characters of UTF-8 `text`, each in lower case, for comparisons that ignore case. The same
/// in every locale. Damaged UTF-8 comes out as something that is the same each time. Any thread.
SUPPORTSDK_API std::wstring caseFolded(std::string_view text);

}  // namespace supportsdk
