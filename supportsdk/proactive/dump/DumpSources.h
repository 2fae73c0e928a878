#pragma once

#include <string>
#include <vector>

#include "supportsdk/proactive/dump/SkippedNames.h"

namespace supportsdk {

/// What is packed, and under which name.
struct DumpSource {
    std::string path;
    std::string name;
};

/// The sources with their last names. For "." and ".." that is the one which the folder really has.
/// What is not there, what has no name ("/"), and the second of a name is skipped.
std::vector<DumpSource> dumpSources(const std::vector<std::string>& paths, SkippedNames& skipped);

}  // namespace supportsdk
