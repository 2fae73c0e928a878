#pragma once

#include <memory>

#include "supportsdk/core/Support.h"
#include "supportsdk/knowledge/KBViewModel.h"
#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Screens.h"

namespace supportsdk {

/// The knowledge base as a list of folders, which open in place or on a screen of their own, and
/// articles. Main thread only.
class SUPPORTSDK_API KBListViewController : public ScreenController,
                                            public SupportDelegate,
                                            public KBViewModelDelegate {
 public:
    /// What the screen asks of its picture.
    class View {
     public:
        virtual ~View() = default;
        /// The rows have changed: those of `kbViewModel`, none without one.
        virtual void reloadTable() = 0;
    };

    /// `support` may not be null.
    static std::shared_ptr<KBListViewController> create(std::shared_ptr<Support> support,
                                                        std::weak_ptr<SupportButton> button);

    [[nodiscard]] std::string_view className() const override { return "KBListViewController"; }
    /// Takes the tree that Support holds, also in place of a model that was set before, or fetches
    /// it.
    void viewDidLoad() override;
    void viewWillAppear() override;
    void viewDidAppear() override;
    void viewWillDisappear() override;

    void supportUpdateKBWithModel(const std::shared_ptr<KBViewModel>& model) override;
    void viewModelDidSelectFolder(KBViewModel& model,
                                  const std::shared_ptr<KBEntryModel>& folder) override;
    void viewModelDidSelectEntry(KBViewModel& model,
                                 const std::shared_ptr<KBEntryModel>& entry) override;
    void viewModelDidExpandFolder(KBViewModel& model,
                                  const std::shared_ptr<KBEntryModel>& folder) override;

    /// The magnifying glass: opens the search.
    void search();

    const std::shared_ptr<Support> support;
    const std::weak_ptr<SupportButton> supportButton;
    std::weak_ptr<View> view;
    /// Rows, indents and selection; null until there is something to show.
    std::shared_ptr<KBViewModel> kbViewModel;

 private:
    KBListViewController(std::shared_ptr<Support> support, std::weak_ptr<SupportButton> button);

    void reloadTable();
    void dismissProgress();
    [[nodiscard]] std::shared_ptr<KBListViewController> self();

    bool isRetrievingShown_ = false;
};

}  // namespace supportsdk
