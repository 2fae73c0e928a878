#include "hosts/cli/HistoryMenuAdapter.h"

namespace supportsdk::host {

Json HistoryMenuAdapter::state() const {
    Json fields = Json::array();
    for (std::size_t row = 0; row < menu_->entries.size(); ++row)
        fields.push_back({{"label", menu_->labelOfRow(row)}, {"value", menu_->isRowOn(row)}});
    return {{"fields", std::move(fields)}};
}

bool HistoryMenuAdapter::set(const std::string& field, const Json& value) {
    const auto* on = value.get_ptr<const bool*>();
    for (std::size_t row = 0; on && row < menu_->entries.size(); ++row) {
        if (menu_->labelOfRow(row) == field) return menu_->setRow(row, *on);
    }
    return false;
}

}  // namespace supportsdk::host
