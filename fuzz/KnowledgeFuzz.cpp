#include <set>

#include "fuzz/Fuzzing.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/knowledge/KBViewModel.h"

using namespace supportsdk;
using fuzz::require;

namespace {

/// Everybody hangs below one parent at most, one level deeper than that.
void checkTree(const KBViewModel& model) {
    std::set<const KBEntryModel*> seen;
    for (const auto& entry : model.entries) {
        for (const auto& child : entry->children) {
            require(seen.insert(child.get()).second);
            require(child->level == entry->level + 1);
            require(child->parentId && child->parentId == entry->id && !child->isRoot());
        }
    }
}

void checkRows(KBViewModel& model) {
    const auto rows = model.visibleEntries;
    require(std::set(rows.begin(), rows.end()).size() == rows.size());
    for (const auto& row : rows) {
        const auto depth = row->level - model.baseLevel;
        require(depth <= (row->isFolder() ? 4 : 5));
        require(model.indentForEntry(*row) >= 0.0);
    }
    model.updateVisibleEntries();
    require(model.visibleEntries == rows);
}

std::size_t descendants(const KBEntryModel& top) {
    std::size_t count = 0;
    std::vector<const KBEntryModel*> waiting{&top};
    while (!waiting.empty()) {
        const auto* entry = waiting.back();
        waiting.pop_back();
        count += entry->children.size();
        for (const auto& child : entry->children) waiting.push_back(child.get());
    }
    return count;
}

struct Screen : KBViewModelDelegate {
    void viewModelDidSelectFolder(KBViewModel&, const KBViewModel::Entry& entry) override {
        folder = entry;
    }
    KBViewModel::Entry folder;
};

}  // namespace

/// The input chooses rows with its first four bytes; the others are the entries.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 4) return 0;
    const auto array = parseJson({reinterpret_cast<const char*>(data) + 4, size - 4});
    if (!array) return 0;
    const auto model = KBViewModel::createWithArray(*array);
    const auto screen = std::make_shared<Screen>();
    model->delegate = screen;
    checkTree(*model);
    checkRows(*model);
    for (std::size_t tap = 0; tap < 4 && model->numberOfRows() > 0; ++tap) {
        model->didSelectRow(data[tap] % model->numberOfRows());
        checkRows(*model);
    }
    if (screen->folder) {
        const auto deep = KBViewModel::createWithFolder(screen->folder);
        deep->baseLevel = screen->folder->level + 1;
        deep->updateVisibleEntries();
        require(deep->numberOfRows() >= screen->folder->children.size());
        checkRows(*deep);
    }

    const auto found = KBViewModel::createWithSearchResults(*array);
    require(found->entries.size() == model->entries.size() && found->numberOfRows() == 0);
    // A host may build its own tree of what was found.
    const auto top = std::make_shared<KBEntryModel>();
    top->id = "1";
    const auto rest = top->addChildrenFromEntries(found->entries);
    require(descendants(*top) + rest.size() == found->entries.size());
    KBViewModel::sort(found->entries);
    return 0;
}
