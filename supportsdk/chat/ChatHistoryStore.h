#pragma once

#include <optional>
#include <string>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/UserDefaults.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// Lines of conversations on this device: the preferences' key "QuorrandChatHistory" holds a
/// dictionary from conversation to an array of lines, as QuorrandChatMessage::dict() gives them.
/// There is no limit and no expiry, and each write is the whole dictionary. Main thread.
class SUPPORTSDK_API ChatHistoryStore {
 public:
    /// Adds a line to its conversation and stores everything durably. A conversation whose stored
    /// value is damaged starts anew. A write that fails goes unnoticed.
    void addEntry(UserDefaults& defaults, const std::string& conversation, Json line);

    /// The stored lines of a conversation, an array; nothing when there are none. What this object
    /// knew is replaced by what is stored, where a damaged value counts as empty. But an object
    /// that knows nothing yet empties the store instead: what an earlier process has left is never
    /// shown.
    [[nodiscard]] std::optional<Json> load(UserDefaults& defaults, const std::string& conversation);

 private:
    void write(UserDefaults& defaults) const;

    /// Nothing until the first operation.
    std::optional<Json> history_;
};

}  // namespace supportsdk
