#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "supportsdk/chat/ChatLineParts.h"
#include "supportsdk/platform/Export.h"

namespace supportsdk {

class QDChatActionButton;
class QDChatButtonCollectionView;

/// Hears of a line's buttons. Main thread; an operation that is not overridden is silence.
class QDChatButtonCollectionViewDelegate {
 public:
    virtual ~QDChatButtonCollectionViewDelegate() = default;

    /// The buttons are laid out, and `collection.height` is their real height: the line has another
    /// size.
    virtual void collectionViewDidFinishReloading(QDChatButtonCollectionView& collection) {
        (void)collection;
    }
};

/// The action buttons of one line, an item each. Whoever draws them attaches `view`, asks the item
/// operations, and reports the height of what it laid out to contentSizeDidChange(); until then,
/// and where nobody draws, `height` is the estimate that the line made. Main thread.
class SUPPORTSDK_API QDChatButtonCollectionView {
 public:
    /// What the buttons ask of their picture.
    class View {
     public:
        virtual ~View() = default;
        /// The buttons have changed: lay them out anew, and report the content's height.
        virtual void reloadData() {}
    };

    /// Of the cells that the buttons are put into.
    static constexpr std::string_view reuseName = "CELL";
    /// Below the last button, in points.
    static constexpr double bottomMargin = 15.0;

    explicit QDChatButtonCollectionView(double estimatedHeight = 0) : height(estimatedHeight) {}

    void reload();

    /// The next contentSizeDidChange() counts, and no other after it.
    void startObserving() { isObserving_ = true; }
    void stopObserving() { isObserving_ = false; }
    [[nodiscard]] bool isObserving() const { return isObserving_; }
    /// The content has this height now, in points. While observed it becomes `height`, with the
    /// margin, and `parentDelegate` is told. What is no height is ignored.
    void contentSizeDidChange(double contentHeight);

    [[nodiscard]] std::size_t numberOfItems() const { return buttons.size(); }
    /// Null, no size and no radius for an item that does not exist.
    [[nodiscard]] std::shared_ptr<QDChatActionButton> buttonForItem(std::size_t item) const;
    /// That of the button's frame.
    [[nodiscard]] ChatCellSize sizeForItem(std::size_t item) const;
    /// Half the button's height.
    [[nodiscard]] double cornerRadiusForItem(std::size_t item) const;

    std::weak_ptr<QDChatButtonCollectionViewDelegate> parentDelegate;
    std::weak_ptr<View> view;
    std::vector<std::shared_ptr<QDChatActionButton>> buttons;
    /// In points; also that of its frame.
    double height = 0;

 private:
    bool isObserving_ = false;
};

}  // namespace supportsdk
