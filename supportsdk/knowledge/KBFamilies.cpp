#include "supportsdk/knowledge/KBFamilies.h"

#include <utility>

namespace supportsdk {

void KBFamilies::add(const Entry& entry) {
    if (entry->parentId) waiting_[*entry->parentId].push_back(entry);
}

void KBFamilies::adoptBy(KBEntryModel& root) {
    std::vector<KBEntryModel*> parents{&root};
    while (!parents.empty()) {
        auto& parent = *parents.back();
        parents.pop_back();
        if (!parent.id) continue;
        const auto family = waiting_.extract(*parent.id);
        if (family.empty()) continue;
        for (const auto& child : family.mapped()) {
            child->level = parent.level + 1;
            parent.addChild(child);
        }
        for (auto child = family.mapped().rbegin(); child != family.mapped().rend(); ++child)
            parents.push_back(child->get());
    }
}

bool KBFamilies::isAdopted(const KBEntryModel& entry) const {
    return entry.parentId && !waiting_.contains(*entry.parentId);
}

}  // namespace supportsdk
