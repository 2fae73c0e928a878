#include "supportsdk/knowledge/KBEntryModel.h"

#include <algorithm>
#include <iterator>

#include "supportsdk/core/Fields.h"
#include "supportsdk/knowledge/KBFamilies.h"

namespace supportsdk {

namespace {

/// Identifiers come as numbers from some services, flags as numbers or booleans.
std::optional<std::string> textForKey(const Json& dictionary, std::string_view key) {
    const auto* value = valueForKey(dictionary, key);
    if (!value) return std::nullopt;
    const bool isPlain = value->is_number() || value->is_boolean();
    return isPlain ? dumpJson(*value) : stringForKey(dictionary, key);
}

}  // namespace

KBEntryModel::KBEntryModel(const Json& dictionary)
    : title(textForKey(dictionary, "title")),
      body(textForKey(dictionary, "body")),
      created(textForKey(dictionary, "created")),
      folderName(textForKey(dictionary, "folder_name")),
      id(textForKey(dictionary, "id")),
      keywords(textForKey(dictionary, "keywords")),
      ownerPartnerId(textForKey(dictionary, "owner_partner_id")),
      parentId(textForKey(dictionary, "parent_id")),
      rootName(textForKey(dictionary, "root_name")),
      rootParentId(textForKey(dictionary, "root_parent_id")),
      shortName(textForKey(dictionary, "short_name")),
      status(textForKey(dictionary, "status")),
      subtitle(textForKey(dictionary, "sub_title")),
      type(integerForKey(dictionary, "type").value_or(0)),
      visibility(textForKey(dictionary, "visibility")),
      avatar(textForKey(dictionary, "avatar")),
      preview(textForKey(dictionary, "preview")),
      url(textForKey(dictionary, "url")),
      desc(textForKey(dictionary, "description")),
      searchable(textForKey(dictionary, "searchable")),
      path(textForKey(dictionary, "path")),
      actual_path(textForKey(dictionary, "actual_path")) {}

KBEntryModel::~KBEntryModel() {
    auto doomed = std::move(children);
    while (!doomed.empty()) {
        const auto entry = std::move(doomed.back());
        doomed.pop_back();
        if (entry.use_count() > 1) continue;
        doomed.insert(doomed.end(), std::make_move_iterator(entry->children.begin()),
                      std::make_move_iterator(entry->children.end()));
        entry->children.clear();
    }
}

std::vector<std::shared_ptr<KBEntryModel>> KBEntryModel::addChildrenFromEntries(
    const std::vector<std::shared_ptr<KBEntryModel>>& entries) {
    KBFamilies families;
    for (const auto& entry : entries) {
        // Nothing hangs below itself: it would keep itself for ever.
        if (entry.get() != this) families.add(entry);
    }
    families.adoptBy(*this);
    std::vector<std::shared_ptr<KBEntryModel>> rest;
    std::copy_if(entries.begin(), entries.end(), std::back_inserter(rest), [&](const auto& entry) {
        return entry.get() == this || !families.isAdopted(*entry);
    });
    return rest;
}

std::vector<std::shared_ptr<KBEntryModel>> KBEntryModel::folders() const {
    std::vector<std::shared_ptr<KBEntryModel>> found;
    std::copy_if(children.begin(), children.end(), std::back_inserter(found),
                 [](const auto& child) { return child->isFolder(); });
    return found;
}

std::vector<std::shared_ptr<KBEntryModel>> KBEntryModel::articles() const {
    std::vector<std::shared_ptr<KBEntryModel>> found;
    std::copy_if(children.begin(), children.end(), std::back_inserter(found),
                 [](const auto& child) { return !child->isFolder(); });
    return found;
}

}  // namespace supportsdk
