#pragma once

#include <string>
#include <string_view>

#include "supportsdk/platform/Export.h"

namespace supportsdk {

/// The characters of UTF-8 `text`, each in lower case, for comparisons that ignore case. The same
/// in every locale. Damaged UTF-8 comes out as something that is the same each time. Any thread.
SUPPORTSDK_API std::wstring caseFolded(std::string_view text);

/// Whether words are made of it: a letter or digit of any script, a mark over one, a joiner between
/// them, or "_". The same in every locale. Any thread.
SUPPORTSDK_API bool isWordCharacter(wchar_t character);

}  // namespace supportsdk
