#include "supportsdk/knowledge/KBViewModel.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "supportsdk/knowledge/KBFamilies.h"

namespace supportsdk {

namespace {

using Entry = KBViewModel::Entry;

constexpr std::int64_t deepestListed = 4;
constexpr std::int64_t deepestOpenInPlace = 3;
constexpr double indentWidth = 20.0;

/// Appends rows as a list counts depths that has `baseLevel` at its top. The limit on the depth
/// bounds the recursion.
struct RowCollector {
    const std::int64_t baseLevel;
    std::vector<Entry>& rows;

    void add(const Entry& entry) const {
        if (entry->level - baseLevel > deepestListed) return;
        rows.push_back(entry);
        addBelow(*entry);
    }
    void addBelow(const KBEntryModel& entry) const {
        if (entry.collapsed) return;
        for (const auto& child : entry.children) {
            if (child->isFolder()) {
                add(child);
            } else {
                rows.push_back(child);
            }
        }
    }
};

std::vector<Entry> rowsBelow(const KBEntryModel& folder, std::int64_t baseLevel) {
    std::vector<Entry> rows;
    RowCollector{baseLevel, rows}.addBelow(folder);
    return rows;
}

}  // namespace

std::shared_ptr<KBViewModel> KBViewModel::createWithArray(const Json& array) {
    std::shared_ptr<KBViewModel> model(new KBViewModel());
    model->processArray(array);
    if (model->kbRoot->children.size() == 1) {
        model->kbRoot = Entry(model->kbRoot->children.front());
        model->baseLevel = model->kbRoot->level;
    } else {
        model->baseLevel = model->kbRoot->level + 1;
    }
    model->updateVisibleEntries();
    return model;
}

std::shared_ptr<KBViewModel> KBViewModel::createWithSearchResults(const Json& array) {
    std::shared_ptr<KBViewModel> model(new KBViewModel());
    for (const auto& dictionary : array) {
        model->entries.push_back(std::make_shared<KBEntryModel>(dictionary));
    }
    return model;
}

std::shared_ptr<KBViewModel> KBViewModel::createWithFolder(Entry folder) {
    std::shared_ptr<KBViewModel> model(new KBViewModel());
    model->kbRoot = std::move(folder);
    model->updateVisibleEntries();
    return model;
}

void KBViewModel::processArray(const Json& array) {
    kbRoot = std::make_shared<KBEntryModel>();
    entries.clear();
    KBFamilies families;
    for (const auto& dictionary : array) {
        const auto& entry = entries.emplace_back(std::make_shared<KBEntryModel>(dictionary));
        if (entry->isRoot()) {
            kbRoot->addChild(entry);
        } else {
            families.add(entry);
        }
    }
    for (const auto& root : kbRoot->children) families.adoptBy(*root);
    updateVisibleEntries();
}

void KBViewModel::sort(std::vector<Entry>& list) {
    std::stable_sort(list.begin(), list.end(),
                     [](const Entry& one, const Entry& two) { return one->title < two->title; });
}

void KBViewModel::updateVisibleEntries() {
    visibleEntries.clear();
    if (!kbRoot) return;
    for (const auto& child : kbRoot->children) addVisibleChildrenOfEntry(child);
}

void KBViewModel::updateVisibleEntriesFromRootEntry(const Entry& entry) {
    visibleEntries.clear();
    if (!entry) return;
    visibleEntries.push_back(entry);
    for (const auto& child : entry->children) addVisibleChildrenOfEntry(child);
}

void KBViewModel::addVisibleChildrenOfEntry(const Entry& entry) {
    RowCollector{baseLevel, visibleEntries}.add(entry);
}

/// Opens or closes the folder of a row at the cost of its own rows: of others only pointers move.
/// The outcome is that of updateVisibleEntries(), if the rows were.
void KBViewModel::flip(std::size_t row) {
    const auto folder = visibleEntries[row];
    const auto before = rowsBelow(*folder, baseLevel);
    folder->collapsed = !folder->collapsed;

    const auto first = visibleEntries.begin() + static_cast<std::ptrdiff_t>(row + 1);
    const auto [known, last] =
        std::mismatch(before.begin(), before.end(), first, visibleEntries.end());
    // Somebody else has changed entries meanwhile.
    if (known != before.end() || (last != visibleEntries.end() && (*last)->level > folder->level))
        return updateVisibleEntries();
    if (folder->collapsed) {
        visibleEntries.erase(first, last);
    } else {
        auto below = rowsBelow(*folder, baseLevel);
        visibleEntries.insert(first, std::make_move_iterator(below.begin()),
                              std::make_move_iterator(below.end()));
    }
}

double KBViewModel::indentForEntry(const KBEntryModel& entry) const {
    return static_cast<double>(depthOf(entry) + 1) * indentWidth;
}

void KBViewModel::didSelectRow(std::size_t row) {
    if (row >= visibleEntries.size()) return;
    const auto entry = visibleEntries[row];
    const auto told = delegate.lock();
    if (!entry->isFolder()) {
        if (told) told->viewModelDidSelectEntry(*this, entry);
    } else if (depthOf(*entry) > deepestOpenInPlace) {
        if (told && !entry->children.empty()) told->viewModelDidSelectFolder(*this, entry);
    } else {
        flip(row);
        if (told) told->viewModelDidExpandFolder(*this, entry);
    }
}

}  // namespace supportsdk
