#include "supportsdk/launcher/HistoryActionPopupMenu.h"

#include <utility>

#include "supportsdk/core/Fields.h"
#include "supportsdk/forms/QDFieldModel.h"

namespace supportsdk {

std::shared_ptr<HistoryActionPopupMenu> HistoryActionPopupMenu::create(
    std::shared_ptr<Support> support, Fields entries,
    std::weak_ptr<HistoryActionPopupMenuDelegate> delegate) {
    return std::shared_ptr<HistoryActionPopupMenu>(
        new HistoryActionPopupMenu(std::move(support), std::move(entries), std::move(delegate)));
}

HistoryActionPopupMenu::HistoryActionPopupMenu(
    std::shared_ptr<Support> owner, Fields fields,
    std::weak_ptr<HistoryActionPopupMenuDelegate> listener)
    : support(std::move(owner)), entries(std::move(fields)), delegate(std::move(listener)) {}

std::string HistoryActionPopupMenu::labelOfRow(std::size_t row) const {
    const auto* field = fieldOfRow(row);
    if (!field || !field->fieldLabel) return "";
    return support->platform->localizer->localized(*field->fieldLabel);
}

bool HistoryActionPopupMenu::isRowOn(std::size_t row) const {
    const auto* field = fieldOfRow(row);
    return field && isOn(*field).value_or(false);
}

bool HistoryActionPopupMenu::setRow(std::size_t row, bool on) {
    auto* field = fieldOfRow(row);
    if (!field) return false;
    const auto self = shared_from_this();
    field->committedValue = on ? 1 : 0;
    if (const auto told = delegate.lock()) told->menuDidUpdateEntries(*this, entries);
    if (const auto picture = view.lock()) picture->reloadTable();
    return true;
}

void HistoryActionPopupMenu::close() {
    const auto self = shared_from_this();
    support->platform->presenter->dismiss(*this);
}

std::optional<bool> HistoryActionPopupMenu::isOn(const QDFieldModel& field) {
    const auto& value = field.value();
    if (!value || !(value->is_number() || value->is_boolean())) return std::nullopt;
    return *value != 0 && *value != false;
}

QDFieldModel* HistoryActionPopupMenu::fieldOfRow(std::size_t row) const {
    return row < entries.size() ? entries[row].get() : nullptr;
}

}  // namespace supportsdk
