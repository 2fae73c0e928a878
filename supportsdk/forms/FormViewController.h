#pragma once

#include "supportsdk/core/Support.h"
#include "supportsdk/forms/FormFieldViewModel.h"

namespace supportsdk {

/// Fills in one form and sends it. The button to save is in the bar only while the form is
/// complete. Main thread only.
class SUPPORTSDK_API FormViewController : public ScreenController,
                                          public FormDelegate,
                                          public SupportDelegate {
 public:
    /// What the screen asks of its picture.
    class View {
     public:
        virtual ~View() = default;
        virtual void reloadTable() = 0;
    };

    static std::shared_ptr<FormViewController> create(std::shared_ptr<FormFieldViewModel> viewModel,
                                                      std::shared_ptr<Support> support);
    /// The screen for a form, editable and with the theme's look.
    static std::shared_ptr<FormViewController> create(const std::shared_ptr<QDFormModel>& form,
                                                      const std::shared_ptr<Support>& support);

    [[nodiscard]] std::string_view className() const override { return "FormViewController"; }
    void viewDidLoad() override;
    void viewWillAppear() override;
    void viewWillDisappear() override;

    void formDidChangeSelection() override;
    void supportUpdateFormWithModel(const std::shared_ptr<QDFormModel>& model) override;

    /// Sends the form when it is complete, else says what is missing. After success the form is
    /// reset and the screen goes; after a failure everything stays. Does nothing while the form is
    /// being sent.
    void save();
    void refresh();

    const std::shared_ptr<FormFieldViewModel> viewModel;
    const std::shared_ptr<Support> support;
    std::weak_ptr<View> view;

 private:
    FormViewController(std::shared_ptr<FormFieldViewModel> viewModel,
                       std::shared_ptr<Support> support);

    void enableSave();
    void setFormAppearance();
    void reportFieldWithoutControl();
    void showMissingFields() const;
    void didSubmit(const Json& response);
    void didFail(const Json& response);
    void leave();
    std::weak_ptr<FormViewController> weakSelf();
    [[nodiscard]] std::string localized(const std::string& text) const;

    bool isSubmitting_ = false;
    bool isReported_ = false;
};

}  // namespace supportsdk
