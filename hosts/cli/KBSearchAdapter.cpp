#include "hosts/cli/KBSearchAdapter.h"

namespace supportsdk::host {

Json KBSearchAdapter::state() const {
    Json sections = Json::array();
    for (std::size_t section = 0; section < KBSearchViewController::numberOfSections; ++section)
        sections.push_back(describeSection(section));
    return {{"search",
             {{"text", search_->barText},
              {"cancelShown", search_->isCancelButtonShown},
              {"focused", search_->isBarFocused}}},
            {"sections", std::move(sections)}};
}

Json KBSearchAdapter::describeSection(std::size_t section) const {
    Json fields = Json::object();
    auto heading = search_->headingOfSection(section);
    if (!heading.empty()) fields["heading"] = std::move(heading);
    auto& rows = fields["rows"] = Json::array();
    for (std::size_t row = 0; row < search_->numberOfRows(section); ++row)
        rows.push_back({{"label", search_->textOfRow(section, row)}});
    return fields;
}

bool KBSearchAdapter::select(std::size_t section, std::size_t row) {
    if (section >= KBSearchViewController::numberOfSections) return false;
    if (row >= search_->numberOfRows(section)) return false;
    // An article takes the focus from the bar.
    if (section == KBSearchViewController::top && search_->isBarFocused)
        search_->searchBarTextDidEndEditing();
    search_->didSelectRow(section, row);
    return true;
}

bool KBSearchAdapter::type(const std::string& text, const std::optional<std::string>& field) {
    if (field) return false;
    search_->searchBarTextDidChange(text);
    return true;
}

bool KBSearchAdapter::send() {
    search_->searchBarSearchButtonClicked();
    return true;
}

bool KBSearchAdapter::pressControl(const std::string& label) {
    if (label != "Cancel" || !search_->isCancelButtonShown) return false;
    search_->searchBarCancelButtonClicked();
    return true;
}

}  // namespace supportsdk::host
