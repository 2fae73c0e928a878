#include "supportsdk/knowledge/KBViewModel.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace supportsdk {

namespace {

using Entry = KBViewModel::Entry;

constexpr std::int64_t deepestListed = 4;
constexpr std::int64_t deepestOpenInPlace = 3;
constexpr double indentWidth = 20.0;

/// Who waits for a parent, by the parent's identifier and in the order received.
using Orphans = std::unordered_map<std::string_view, std::vector<Entry>>;

/// Hangs below `root` all that leads to it. Each family of orphans goes to the first parent with
/// its identifier, so that circles end and nobody is there twice.
void adopt(const Entry& root, Orphans& orphans) {
    std::vector<Entry> parents{root};
    while (!parents.empty()) {
        const auto parent = std::move(parents.back());
        parents.pop_back();
        if (!parent->id) continue;
        const auto found = orphans.find(*parent->id);
        if (found == orphans.end()) continue;
        parent->children = std::move(found->second);
        orphans.erase(found);
        for (const auto& child : parent->children) child->level = parent->level + 1;
        parents.insert(parents.end(), parent->children.rbegin(), parent->children.rend());
    }
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
    Orphans orphans;
    for (const auto& dictionary : array) {
        const auto& entry = entries.emplace_back(std::make_shared<KBEntryModel>(dictionary));
        if (entry->isRoot()) {
            kbRoot->addChild(entry);
        } else if (entry->parentId) {
            orphans[*entry->parentId].push_back(entry);
        }
    }
    for (const auto& root : kbRoot->children) adopt(root, orphans);
}

void KBViewModel::updateVisibleEntries() {
    visibleEntries.clear();
    if (!kbRoot) return;
    for (const auto& child : kbRoot->children) addVisibleChildrenOfEntry(child);
}

/// The limit on the depth bounds the recursion.
void KBViewModel::addVisibleChildrenOfEntry(const Entry& entry) {
    if (depthOf(*entry) > deepestListed) return;
    visibleEntries.push_back(entry);
    if (entry->collapsed) return;
    for (const auto& child : entry->children) {
        if (child->isFolder()) {
            addVisibleChildrenOfEntry(child);
        } else {
            visibleEntries.push_back(child);
        }
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
        entry->collapsed = !entry->collapsed;
        updateVisibleEntries();
        if (told) told->viewModelDidExpandFolder(*this, entry);
    }
}

}  // namespace supportsdk
