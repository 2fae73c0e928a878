#pragma once

#include <map>
#include <string>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// The data of a TXT record (RFC 6763, section 6) with these pairs as "key=value", in the order of
/// their keys' bytes; one empty string when there is none. A pair that a record cannot carry is
/// left out, the others stay: a key that is empty or has other characters than printable ASCII
/// without '='; a pair longer than 255 bytes; a pair that would bring the record above 65,535
/// bytes. Readers ignore the case of keys and take the first of equal ones, so of keys that differ
/// in case only, the last is written: lower case beats upper case.
[[nodiscard]] SUPPORTSDK_API Bytes
dataFromTXTRecordDictionary(const std::map<std::string, Bytes>& pairs);

}  // namespace supportsdk
