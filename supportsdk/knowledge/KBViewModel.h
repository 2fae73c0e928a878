#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "supportsdk/knowledge/KBEntryModel.h"
#include "supportsdk/platform/Export.h"

namespace supportsdk {

class Appearance;
class KBViewModel;

/// What the list of a knowledge base tells its screen. Main thread; an operation that is not
/// overridden is silence.
class SUPPORTSDK_API KBViewModelDelegate {
 public:
    virtual ~KBViewModelDelegate() = default;

    /// A folder was chosen that is too deep to open in place.
    virtual void viewModelDidSelectFolder(KBViewModel& model,
                                          const std::shared_ptr<KBEntryModel>& folder) {
        (void)model, (void)folder;
    }
    /// An article was chosen.
    virtual void viewModelDidSelectEntry(KBViewModel& model,
                                         const std::shared_ptr<KBEntryModel>& entry) {
        (void)model, (void)entry;
    }
    /// A folder was opened or closed in place: the rows have changed.
    virtual void viewModelDidExpandFolder(KBViewModel& model,
                                          const std::shared_ptr<KBEntryModel>& folder) {
        (void)model, (void)folder;
    }
};

/// The tree of the knowledge base and the rows that a list shows of it. Main thread only.
class SUPPORTSDK_API KBViewModel {
 public:
    using Entry = std::shared_ptr<KBEntryModel>;

    /// The tree of all these objects, in their order at every level. What no root leads to is in
    /// `entries` alone. A single root is not a row itself.
    static std::shared_ptr<KBViewModel> createWithArray(const Json& array);
    /// `entries` alone: neither a tree nor rows.
    static std::shared_ptr<KBViewModel> createWithSearchResults(const Json& array);
    /// The rows below one folder, counted from the tree's top: of a folder that is too deep to open
    /// in place there are none.
    static std::shared_ptr<KBViewModel> createWithFolder(Entry folder);

    /// Takes these objects in place of all entries, tree and rows; `baseLevel` stays, and a single
    /// root is a row.
    void processArray(const Json& array);
    /// By title, byte by byte; what has none comes first. The list keeps the service's order:
    /// nothing in the kit calls this.
    static void sort(std::vector<Entry>& list);

    [[nodiscard]] std::size_t numberOfRows() const { return visibleEntries.size(); }
    /// In points.
    [[nodiscard]] double indentForEntry(const KBEntryModel& entry) const;
    /// Opens or closes a folder, or tells the delegate. A row that is not there is ignored. Only
    /// the folder's own rows change: whoever changes entries by other ways calls
    /// updateVisibleEntries().
    void didSelectRow(std::size_t row);
    /// Lists the rows anew.
    void updateVisibleEntries();
    /// The rows are `entry`, unless it is null, and those below it. A way for hosts.
    void updateVisibleEntriesFromRootEntry(const Entry& entry);
    /// Appends the row of `entry`, unless it is too deep, and those below it.
    void addVisibleChildrenOfEntry(const Entry& entry);

    std::weak_ptr<KBViewModelDelegate> delegate;
    /// The level that counts as the top of this list.
    std::int64_t baseLevel = 0;
    /// Every entry received.
    std::vector<Entry> entries;
    /// The text style of a row's title.
    std::string titleFont = "subheadline";
    std::shared_ptr<Appearance> appearance;
    /// Its children are shown.
    Entry kbRoot;
    /// The rows, in their order.
    std::vector<Entry> visibleEntries;

 private:
    KBViewModel() = default;

    void flip(std::size_t row);
    /// Levels below the top of this list.
    [[nodiscard]] std::int64_t depthOf(const KBEntryModel& entry) const {
        return entry.level - baseLevel;
    }
};

}  // namespace supportsdk
