#pragma once

#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "supportsdk/core/KeyedHash.h"
#include "supportsdk/knowledge/KBEntryModel.h"

namespace supportsdk {

/// Entries that wait for their parent: families of those with one parent, in the order received.
/// Valid as long as they live. Main thread only.
class KBFamilies {
 public:
    using Entry = std::shared_ptr<KBEntryModel>;

    /// What names no parent waits for none.
    void add(const Entry& entry);
    /// Hangs below `root` all that leads to it, without recursion. A family goes as a whole to the
    /// first parent with its identifier, depth first.
    void adoptBy(KBEntryModel& root);
    /// Of an entry that was added: whether it hangs below one.
    [[nodiscard]] bool isAdopted(const KBEntryModel& entry) const;

 private:
    std::unordered_map<std::string_view, std::vector<Entry>, KeyedHash> waiting_;
};

}  // namespace supportsdk
