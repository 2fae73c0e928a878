#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

#include "supportsdk/knowledge/KBEntryModel.h"

namespace supportsdk::bench {

/// The tree by lists alone: slow, and endless where an identifier comes back below
/// itself.
class PlainRule {
 public:
    using Entry = std::shared_ptr<KBEntryModel>;
    using List = std::vector<Entry>;

    explicit PlainRule(const Json& array) : bound_(array.size() + 1) {
        List pending;
        for (const auto& dictionary : array) {
            all_.push_back(std::make_shared<KBEntryModel>(dictionary));
            (all_.back()->isRoot() ? root->children : pending).push_back(all_.back());
        }
        while (!pending.empty()) {
            const auto length = pending.size();
            for (const auto& child : root->children) pending = addChildren(*child, pending, 0);
            if (pending.size() == length) pending.clear();
        }
    }
    ~PlainRule() {
        for (const auto& entry : all_) entry->children.clear();
    }
    PlainRule(const PlainRule&) = delete;
    PlainRule& operator=(const PlainRule&) = delete;

    Entry root = std::make_shared<KBEntryModel>();
    bool isEndless = false;

 private:
    List addChildren(KBEntryModel& parent, const List& pending, std::size_t depth) {
        isEndless = isEndless || depth > bound_;
        if (isEndless) return {};
        List rest = pending;
        for (const auto& entry : pending) {
            if (!parent.id || entry->parentId != parent.id) continue;
            entry->level = parent.level + 1;
            rest = addChildren(*entry, rest, depth + 1);
            parent.children.push_back(entry);
            rest.erase(std::remove(rest.begin(), rest.end(), entry), rest.end());
        }
        return rest;
    }

    const std::size_t bound_;
    List all_;
};

}  // namespace supportsdk::bench
