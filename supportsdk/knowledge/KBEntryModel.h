#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// An article or folder of the knowledge base. The service's numbers are taken as texts too; what
/// is neither counts as missing. Main thread only.
class SUPPORTSDK_API KBEntryModel {
 public:
    KBEntryModel() = default;
    /// Reads an entry of the service. A value that is no object gives an empty article.
    explicit KBEntryModel(const Json& dictionary);
    /// Takes apart what hangs below it without recursion: a tree may be as deep as it is long.
    ~KBEntryModel();
    KBEntryModel(const KBEntryModel&) = delete;
    KBEntryModel& operator=(const KBEntryModel&) = delete;

    void addEntry(std::shared_ptr<KBEntryModel> entry) { children.push_back(std::move(entry)); }
    void addChild(std::shared_ptr<KBEntryModel> child) { children.push_back(std::move(child)); }
    /// Hangs below this entry all of `entries` that leads to it, in their order at every level, and
    /// returns the rest. Of entries with one identifier the first that is reached, depth first, has
    /// the children; nobody is hung up twice, so that circles end. Linear in `entries`,
    /// which may hold nobody that this entry hangs below.
    std::vector<std::shared_ptr<KBEntryModel>> addChildrenFromEntries(
        const std::vector<std::shared_ptr<KBEntryModel>>& entries);
    /// The children that are folders, and those that are not.
    [[nodiscard]] std::vector<std::shared_ptr<KBEntryModel>> folders() const;
    [[nodiscard]] std::vector<std::shared_ptr<KBEntryModel>> articles() const;

    [[nodiscard]] bool isArticle() const { return type == 0; }
    [[nodiscard]] bool isRoot() const { return type == 2; }
    [[nodiscard]] bool isFolder() const { return type == 1 || isRoot(); }

    void setCollapsed(bool closed) { collapsed = closed; }
    [[nodiscard]] bool isCollapsed() const { return collapsed; }

    /// The folder is closed.
    bool collapsed = false;
    std::vector<std::shared_ptr<KBEntryModel>> children;
    /// 0 for a root.
    std::int64_t level = 0;

    std::optional<std::string> title;
    /// The article's HTML.
    std::optional<std::string> body;
    std::optional<std::string> created;
    std::optional<std::string> folderName;
    std::optional<std::string> id;
    std::optional<std::string> keywords;
    std::optional<std::string> ownerPartnerId;
    /// The `id` of the parent.
    std::optional<std::string> parentId;
    std::optional<std::string> rootName;
    std::optional<std::string> rootParentId;
    std::optional<std::string> shortName;
    std::optional<std::string> status;
    std::optional<std::string> subtitle;
    /// 0 article, 1 folder, 2 root folder.
    std::int64_t type = 0;
    std::optional<std::string> visibility;
    std::optional<std::string> avatar;
    std::optional<std::string> preview;
    /// The article's address, unchecked.
    std::optional<std::string> url;
    /// Its "description".
    std::optional<std::string> desc;
    std::optional<std::string> searchable;
    std::optional<std::string> path;
    std::optional<std::string> actual_path;
};

}  // namespace supportsdk
