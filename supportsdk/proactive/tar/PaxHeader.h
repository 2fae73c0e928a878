#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "supportsdk/proactive/files/FileAttributes.h"

namespace supportsdk {

/// The blocks that go before the data of a file (tarType::file) or folder, whose `path` ends in "/"
/// then: a plain header, before that an extended one (POSIX.1-2001) with what the plain one cannot
/// hold. `path` may be any bytes. Pure; any thread.
std::vector<std::byte> makePaxHeader(std::string_view path, const FileAttributes& attributes,
                                     char type);

}  // namespace supportsdk
