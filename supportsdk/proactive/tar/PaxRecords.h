#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace supportsdk {

/// Records of extended headers (POSIX.1-2001): "LENGTH KEY=VALUE\n", where LENGTH counts all of
/// that in bytes, itself included. Values may hold any bytes. Pure; any thread.

std::string paxRecord(std::string_view key, std::string_view value);

/// Calls `record` with each key and value; false when the text is damaged: what came before was
/// told then. Zero bytes at the end are none.
bool readPaxRecords(std::string_view text,
                    const std::function<void(std::string_view, std::string_view)>& record);

}  // namespace supportsdk
