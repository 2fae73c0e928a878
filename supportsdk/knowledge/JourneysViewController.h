#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "supportsdk/core/Support.h"
#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Screens.h"

namespace supportsdk {

/// The journeys of the customer as a list; a single one opens at once. Main thread only.
class SUPPORTSDK_API JourneysViewController : public ScreenController {
 public:
    /// What the screen asks of its picture.
    class View {
     public:
        virtual ~View() = default;
        virtual void reloadTable() = 0;
    };

    /// `support` may not be null.
    static std::shared_ptr<JourneysViewController> create(std::shared_ptr<Support> support);

    [[nodiscard]] std::string_view className() const override { return "JourneysViewController"; }
    void viewDidLoad() override;
    /// Opens a single journey at once, also on the way back from it; see `isJourneyShowing`.
    void viewWillAppear() override;
    void viewWillDisappear() override;

    [[nodiscard]] std::size_t numberOfRows() const;
    /// "" when there is no such row, or it has no title.
    [[nodiscard]] std::string textOfRow(std::size_t row) const;
    void didSelectRow(std::size_t row);
    /// Pushes the journey's page, or says that its address cannot be opened: see
    /// isWebAddress().
    void showJourney(const JourneyModel& journey);
    /// Leaves the screen.
    void back();
    void refresh();

    const std::shared_ptr<Support> support;
    std::weak_ptr<View> view;
    /// An opener that sets it has the screen leave instead of opening a single journey again, once.
    bool isJourneyShowing = false;

 private:
    explicit JourneysViewController(std::shared_ptr<Support> support);
};

}  // namespace supportsdk
