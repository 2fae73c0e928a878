#include "hosts/cli/KBListAdapter.h"

namespace supportsdk::host {

std::size_t KBListAdapter::numberOfRows() const {
    const auto& model = list().kbViewModel;
    return model ? model->numberOfRows() : 0;
}

Json KBListAdapter::describeRow(std::size_t row) const {
    const auto& model = *list().kbViewModel;
    const auto& entry = *model.visibleEntries[row];
    Json fields = {{"label", entry.title.value_or("")},
                   {"kind", entry.isFolder() ? "folder" : "article"},
                   {"indent", model.indentForEntry(entry)}};
    if (entry.isFolder()) fields["open"] = !entry.isCollapsed();
    if (entry.subtitle && !entry.subtitle->empty()) fields["detail"] = *entry.subtitle;
    return fields;
}

void KBListAdapter::selectRow(std::size_t row) {
    // Choosing may replace the model.
    const auto model = list().kbViewModel;
    model->didSelectRow(row);
}

}  // namespace supportsdk::host
