#include "supportsdk/forms/QDFormModel.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "supportsdk/core/Fields.h"
#include "supportsdk/core/KeyedHash.h"
#include "supportsdk/forms/FieldVisibility.h"

namespace supportsdk {

namespace {

using Fields = std::vector<std::shared_ptr<QDFieldModel>>;

/// Walks the tree of fields without recursion: a chain of parents may be as long as the form.
class VisibleFields {
 public:
    explicit VisibleFields(const Fields& all) {
        for (const auto& field : all) {
            if (field->parentKey && !field->parentKey->empty())
                children_[*field->parentKey].push_back(field);
        }
    }

    void addWithChildren(const std::shared_ptr<QDFieldModel>& top) {
        add(top);
        while (!open_.empty()) {
            auto& level = open_.back();
            if (level.next == level.children->size()) {
                open_.pop_back();
                continue;
            }
            // A copy, because add() may move the levels.
            const auto child = (*level.children)[level.next++];
            if (!seen_.contains(child.get()) && level.parent.shows(*child)) add(child);
        }
    }

    [[nodiscard]] bool contains(const QDFieldModel& field) const { return seen_.contains(&field); }
    Fields take() { return std::move(visible_); }

 private:
    struct Level {
        ParentValue parent;
        const Fields* children;
        std::size_t next = 0;
    };

    void add(const std::shared_ptr<QDFieldModel>& field) {
        seen_.insert(field.get());
        visible_.push_back(field);
        const auto found = children_.find(field->rootKey);
        if (found != children_.end()) open_.push_back({ParentValue(*field), &found->second});
    }

    std::unordered_map<std::string, Fields, KeyedHash> children_;
    std::unordered_set<const QDFieldModel*> seen_;
    std::vector<Level> open_;
    Fields visible_;
};

}  // namespace

void QDFormModel::clear() {
    checklist_id.reset();
    url.reset();
    type.reset();
    name.reset();
}

void QDFormModel::populateWithDictionary(const Json& dictionary) {
    checklist_id = stringForKey(dictionary, "checklist_id");
    if (!checklist_id) checklist_id = stringForKey(dictionary, "id");
    url = stringForKey(dictionary, "url");
    type = numberForKey(dictionary, "type");
    name = stringForKey(dictionary, "name");
    latest_log_complete = stringForKey(dictionary, "latest_log_complete");
    latest_log_id = stringForKey(dictionary, "latest_log_id");
    fieldsDict.clear();
    fields.clear();
    originalFields.clear();

    // The newer key wins even when its value is unusable.
    const auto* const key = valueForKey(dictionary, "fieldDefs") ? "fieldDefs" : "field_defs";
    const auto& stored = dictionaryForKey(dictionary, "field_data");
    for (const auto& [rootKey, definition] : dictionaryForKey(dictionary, key).items()) {
        auto field = std::make_shared<QDFieldModel>();
        field->populateWithDictionary(definition, rootKey);
        // A definition's own value shows after a reset only.
        const auto* value = valueForKey(stored, rootKey);
        field->committedValue = value ? std::optional(*value) : std::nullopt;
        fieldsDict.emplace(rootKey, field);
        fields.push_back(std::move(field));
    }
    originalFields = fields;
}

Json QDFormModel::dict() {
    Json body = Json::object();
    if (checklist_id) {
        body["checklist_id"] = *checklist_id;
        body["checklists_id"] = *checklist_id;
    }
    body["checklist_log_id"] = latest_log_id.value_or("");
    for (const auto& field : fields) {
        if (field->valueUpdated) field->committedValue = field->valueUpdated;
        if (field->committedValue) body[field->rootKey] = *field->committedValue;
    }
    return body;
}

bool QDFormModel::isComplete() {
    missingRequiredFields.clear();
    bool isComplete = true;
    for (const auto& field : fields) {
        if (!field->isRequired()) continue;
        if (field->type == fieldCode::title) {
            isComplete = true;
            continue;
        }
        if (field->isEmpty()) isComplete = false;
        if (!isComplete) missingRequiredFields.push_back(field->fieldLabel.value_or(""));
    }
    return isComplete;
}

void QDFormModel::sortFields() {
    std::stable_sort(fields.begin(), fields.end(), [](const auto& left, const auto& right) {
        return left->priority.value_or(0.0) < right->priority.value_or(0.0);
    });
}

const std::vector<std::shared_ptr<QDFieldModel>>& QDFormModel::determineVisibleFields() {
    VisibleFields visible(originalFields);
    for (const auto& field : fields) {
        const bool isChild = field->parentKey && !field->parentKey->empty();
        if (isChild || field->type == fieldCode::hiddenText || visible.contains(*field)) continue;
        visible.addWithChildren(field);
    }
    fields = visible.take();
    return fields;
}

void QDFormModel::reset() {
    for (const auto& field : originalFields) {
        field->committedValue = field->valueOriginal;
        field->valueUpdated.reset();
    }
    fields = originalFields;
    sortFields();
    determineVisibleFields();
}

}  // namespace supportsdk
