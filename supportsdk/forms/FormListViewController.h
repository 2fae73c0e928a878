#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "supportsdk/core/Support.h"

namespace supportsdk {

/// "Forms": a row for each form of Support; choosing one opens it. Main thread only.
class SUPPORTSDK_API FormListViewController : public ScreenController, public SupportDelegate {
 public:
    /// What the screen asks of its picture.
    class View {
     public:
        virtual ~View() = default;
        virtual void reloadTable() = 0;
    };

    static std::shared_ptr<FormListViewController> create(std::shared_ptr<Support> support);

    [[nodiscard]] std::string_view className() const override { return "FormListViewController"; }
    void viewDidLoad() override;

    [[nodiscard]] std::size_t numberOfRows() const { return support->forms.size(); }
    /// "" when there is no such row.
    [[nodiscard]] std::string textOfRow(std::size_t row) const;
    void didSelectRow(std::size_t row);

    void supportUpdateForms() override { refresh(); }
    void refresh();

    const std::shared_ptr<Support> support;
    std::weak_ptr<View> view;

 private:
    explicit FormListViewController(std::shared_ptr<Support> support);
};

}  // namespace supportsdk
