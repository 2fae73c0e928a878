#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "supportsdk/forms/QDFieldModel.h"

namespace supportsdk {

/// A form of the service, which calls it a checklist: its fields, and whether they are filled.
/// What is entered lives as long as this object. Main thread only.
class SUPPORTSDK_API QDFormModel {
 public:
    QDFormModel() = default;
    explicit QDFormModel(const Json& dictionary) { populateWithDictionary(dictionary); }

    /// Empties `checklist_id`, `url`, `type` and `name`, and nothing else.
    void clear();
    /// Reads a form; what is missing or has another type becomes null. Neither sorts nor hides.
    void populateWithDictionary(const Json& dictionary);

    /// What is sent to the service: the values of the visible fields under their `rootKey`, beside
    /// the identifiers of the form. Commits what was entered.
    [[nodiscard]] Json dict();

    /// Whether the visible required fields are filled. Fills `missingRequiredFields` with the
    /// labels of every required field from the first gap on, up to the next required title; such a
    /// title makes up for the gaps before it.
    bool isComplete();

    /// Sorts `fields` by priority; none counts as 0.
    void sortFields();
    /// Puts into `fields` what shows: the top-level fields in their order, each followed by its
    /// visible children.
    const std::vector<std::shared_ptr<QDFieldModel>>& determineVisibleFields();
    /// Gives every field the value of its definition, drops what was entered, sorts and hides.
    void reset();

    std::optional<std::string> checklist_id;
    std::optional<std::string> url;
    std::optional<double> type;
    std::optional<std::string> name;
    std::optional<std::string> latest_log_complete;
    std::optional<std::string> latest_log_id;

    /// The visible ones, after determineVisibleFields().
    std::vector<std::shared_ptr<QDFieldModel>> fields;
    std::vector<std::string> missingRequiredFields;
    /// By `rootKey`.
    std::map<std::string, std::shared_ptr<QDFieldModel>> fieldsDict;
    /// All of them, always.
    std::vector<std::shared_ptr<QDFieldModel>> originalFields;
};

}  // namespace supportsdk
