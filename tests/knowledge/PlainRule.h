#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "supportsdk/knowledge/KBEntryModel.h"

namespace supportsdk::test {

/// The tree and its rows by lists alone: slow, and endless where an identifier comes back below
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
        const bool isSingle = root->children.size() == 1;
        if (isSingle) root = Entry(root->children.front());
        baseLevel = root->level + (isSingle ? 0 : 1);
    }
    ~PlainRule() {
        for (const auto& entry : all_) entry->children.clear();
    }
    PlainRule(const PlainRule&) = delete;
    PlainRule& operator=(const PlainRule&) = delete;

    [[nodiscard]] std::vector<std::string> rows() const {
        std::vector<std::string> all;
        for (const auto& child : root->children) list(*child, all);
        return all;
    }

    Entry root = std::make_shared<KBEntryModel>();
    std::int64_t baseLevel = 0;
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
    void list(const KBEntryModel& entry, std::vector<std::string>& all) const {
        if (entry.level - baseLevel > 4) return;
        all.push_back(row(entry));
        for (const auto& child : entry.children) {
            if (child->isFolder()) {
                list(*child, all);
            } else {
                all.push_back(row(*child));
            }
        }
    }
    [[nodiscard]] std::string row(const KBEntryModel& entry) const {
        return std::to_string((entry.level - baseLevel + 1) * 20) + " " + *entry.title;
    }

    const std::size_t bound_;
    List all_;
};

}  // namespace supportsdk::test
