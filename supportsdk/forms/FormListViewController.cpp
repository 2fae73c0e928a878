#include "supportsdk/forms/FormListViewController.h"

#include <utility>

#include "supportsdk/forms/FormViewController.h"

namespace supportsdk {

std::shared_ptr<FormListViewController> FormListViewController::create(
    std::shared_ptr<Support> support) {
    return std::shared_ptr<FormListViewController>(new FormListViewController(std::move(support)));
}

FormListViewController::FormListViewController(std::shared_ptr<Support> facade)
    : support(std::move(facade)) {}

void FormListViewController::viewDidLoad() {
    support->formsDelegate = std::static_pointer_cast<FormListViewController>(shared_from_this());
    support->platform->progress->dismiss();
    title = support->platform->localizer->localized("Forms");
}

std::string FormListViewController::textOfRow(std::size_t row) const {
    return row < numberOfRows() ? support->forms[row]->name.value_or("") : "";
}

void FormListViewController::didSelectRow(std::size_t row) {
    if (row >= numberOfRows()) return;
    support->platform->presenter->push(FormViewController::create(support->forms[row], support),
                                       *this);
}

void FormListViewController::refresh() {
    if (const auto shown = view.lock()) shown->reloadTable();
}

}  // namespace supportsdk
