#include "supportsdk/forms/FormViewController.h"

#include <utility>

#include "supportsdk/core/EventManager.h"
#include "supportsdk/core/EventNames.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/core/RestResponse.h"
#include "supportsdk/theme/Appearance.h"

namespace supportsdk {

std::shared_ptr<FormViewController> FormViewController::create(
    std::shared_ptr<FormFieldViewModel> viewModel, std::shared_ptr<Support> support) {
    std::shared_ptr<FormViewController> screen(
        new FormViewController(std::move(viewModel), std::move(support)));
    screen->viewModel->delegate = screen;
    return screen;
}

std::shared_ptr<FormViewController> FormViewController::create(
    const std::shared_ptr<QDFormModel>& form, const std::shared_ptr<Support>& support) {
    auto rows = FormFieldViewModel::create(form);
    const auto& theme = *support->appearance;
    rows->isEditable = true;
    rows->labelColor = theme.labelColor;
    rows->fieldBackgroundColor = theme.kbFolderL0BackgroundColor();
    rows->linkAndButtonTintColor = theme.linkAndButtonTintColor;
    rows->configureWithAppearance(theme);
    rows->isSideBySideLayout = support->isSideBySideForms;
    return create(std::move(rows), support);
}

FormViewController::FormViewController(std::shared_ptr<FormFieldViewModel> rows,
                                       std::shared_ptr<Support> facade)
    : viewModel(std::move(rows)), support(std::move(facade)) {
    viewModel->platform = support->platform;
}

void FormViewController::viewDidLoad() {
    setFormAppearance();
    title = localized(viewModel->formModel->name.value_or(""));
    enableSave();
    reportFieldWithoutControl();
    if (support->isFormsRequested) support->platform->progress->showStatus(localized("Retrieving"));
}

void FormViewController::viewWillAppear() {
    setFormAppearance();
    EventManager::notify(event::formStarted);
}

void FormViewController::viewWillDisappear() {
    EventManager::notify(event::formEnded);
}

void FormViewController::formDidChangeSelection() {
    enableSave();
    reportFieldWithoutControl();
    refresh();
}

void FormViewController::supportUpdateFormWithModel(const std::shared_ptr<QDFormModel>& model) {
    (void)model;
    refresh();
}

void FormViewController::save() {
    if (isSubmitting_) return;
    viewModel->save();
    if (!viewModel->formModel->isComplete()) return showMissingFields();
    isSubmitting_ = true;
    // The answer counts even when the person has left the screen by then: a form that was sent
    // must not keep its values.
    const auto self = std::static_pointer_cast<FormViewController>(shared_from_this());
    support->putForm(
        viewModel->formModel, [self](const Json& response) { self->didSubmit(response); },
        [self](const Json& response) { self->didFail(response); });
}

void FormViewController::showMissingFields() const {
    auto text = localized("Some required fields are empty.\n");
    for (const auto& label : viewModel->formModel->missingRequiredFields) text += "\n" + label;
    support->platform->progress->showError(text);
}

void FormViewController::didSubmit(const Json& response) {
    // Nobody knows whether the service has the form: what was entered must not be lost.
    if (isUnreadable(response)) return didFail(response);
    isSubmitting_ = false;
    support->platform->progress->showInfo(localized("Submission successful"));
    EventManager::notify(event::formSubmitted);
    viewModel->formModel->reset();
    refresh();
    leave();
}

void FormViewController::didFail(const Json& response) {
    isSubmitting_ = false;
    support->platform->progress->showError(stringForKey(response, "message").value_or(""));
}

void FormViewController::leave() {
    if (presentingController.lock()) {
        support->platform->presenter->dismiss(*this);
    } else {
        support->platform->presenter->pop(*this);
    }
}

void FormViewController::refresh() {
    if (const auto shown = view.lock()) shown->reloadTable();
}

void FormViewController::enableSave() {
    rightBarButtons.clear();
    if (!viewModel->formModel->isComplete()) return;
    rightBarButtons.push_back({localized(viewModel->formSaveButtonText), [weak = weakSelf()] {
                                   if (const auto self = weak.lock()) self->save();
                               }});
}

void FormViewController::setFormAppearance() {
    viewModel->configureWithAppearance(*support->appearance);
}

/// Tells the log, once, why the button to save never comes.
void FormViewController::reportFieldWithoutControl() {
    if (isReported_) return;
    const auto field = viewModel->fieldWithoutControl();
    if (!field) return;
    isReported_ = true;
    support->platform->log->write("Form " +
                                  dumpJson(viewModel->formModel->checklist_id.value_or("")) +
                                  " cannot be completed here: it requires a field of type " +
                                  std::to_string(field->type) + ", which has no control yet.");
}

std::weak_ptr<FormViewController> FormViewController::weakSelf() {
    return std::static_pointer_cast<FormViewController>(shared_from_this());
}

std::string FormViewController::localized(const std::string& text) const {
    return support->platform->localizer->localized(text);
}

}  // namespace supportsdk
