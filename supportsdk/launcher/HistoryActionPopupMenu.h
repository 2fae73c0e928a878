#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "supportsdk/core/Support.h"
#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Screens.h"

namespace supportsdk {

class HistoryActionPopupMenu;
class QDFieldModel;

/// Hears of a switch that was flipped. Main thread.
class SUPPORTSDK_API HistoryActionPopupMenuDelegate {
 public:
    using Fields = std::vector<std::shared_ptr<QDFieldModel>>;

    virtual ~HistoryActionPopupMenuDelegate() = default;

    /// `entries` are all switches of the menu, in their order, with their present values as
    /// numbers.
    virtual void menuDidUpdateEntries(HistoryActionPopupMenu& menu, const Fields& entries) {
        (void)menu, (void)entries;
    }
};

/// The switches of the history, over the list. Each takes effect at once. Main thread only.
class SUPPORTSDK_API HistoryActionPopupMenu : public ScreenController {
 public:
    using Fields = HistoryActionPopupMenuDelegate::Fields;

    /// What the menu asks of its picture.
    class View {
     public:
        virtual ~View() = default;
        virtual void reloadTable() = 0;
    };

    /// `support` may not be null.
    static std::shared_ptr<HistoryActionPopupMenu> create(
        std::shared_ptr<Support> support, Fields entries,
        std::weak_ptr<HistoryActionPopupMenuDelegate> delegate);

    [[nodiscard]] std::string_view className() const override { return "HistoryActionPopupMenu"; }

    /// The translated label of the switch, and whether it is on; "" and false when there is none.
    [[nodiscard]] std::string labelOfRow(std::size_t row) const;
    [[nodiscard]] bool isRowOn(std::size_t row) const;
    /// Flips the switch and tells the delegate; false when there is no such row.
    bool setRow(std::size_t row, bool on);
    /// Takes the menu away.
    void close();

    /// The state of a switch; null when its value is neither a number nor a boolean.
    [[nodiscard]] static std::optional<bool> isOn(const QDFieldModel& field);

    const std::shared_ptr<Support> support;
    const Fields entries;
    const std::weak_ptr<HistoryActionPopupMenuDelegate> delegate;
    std::weak_ptr<View> view;
    /// Null is the toolkit's own.
    std::optional<Color> backgroundColor;

 private:
    HistoryActionPopupMenu(std::shared_ptr<Support> support, Fields entries,
                           std::weak_ptr<HistoryActionPopupMenuDelegate> delegate);

    /// Null when there is none.
    [[nodiscard]] QDFieldModel* fieldOfRow(std::size_t row) const;
};

}  // namespace supportsdk
