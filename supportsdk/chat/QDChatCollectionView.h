#pragma once

#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "supportsdk/chat/ChatLineParts.h"
#include "supportsdk/platform/Export.h"

namespace supportsdk {

class QDChatViewModel;
class QuorrandChat;

/// The list of a chat on view. Whoever draws it attaches `view`, asks `dataSource` what stands
/// where, and reports each change of the content's size to contentDidChange(). Main thread.
class SUPPORTSDK_API QDChatCollectionView {
 public:
    /// What the list asks of its picture.
    class View {
     public:
        virtual ~View() = default;
        /// Ask for sections, cells and sizes anew.
        virtual void reloadData() {}
        virtual void scrollToItem(const ChatIndexPath& /*path*/, bool /*animated*/) {}
    };

    explicit QDChatCollectionView(std::weak_ptr<QuorrandChat> engine);

    /// Takes the engine's lines as the data source, and the typing indicator away.
    void setup();
    /// Reloads the picture; once it has its new size, the newest line is scrolled to.
    void reloadCollectionView();
    /// The content has another size. After reloadCollectionView() the first such report scrolls,
    /// animated, to the last item of the last group, unless there is no group; others do nothing.
    void contentDidChange();
    [[nodiscard]] bool isObserving() const { return isObserving_; }

    /// The picture makes its cells for these names.
    void registerClass(std::string_view identifier) { cellClasses_.emplace(identifier); }
    [[nodiscard]] const std::set<std::string>& cellClasses() const { return cellClasses_; }

    std::weak_ptr<View> view;
    std::weak_ptr<QDChatViewModel> dataSource;
    /// For the picture's use: cells made since the last reload.
    std::size_t cellCount = 0;

 private:
    const std::weak_ptr<QuorrandChat> engine_;
    std::set<std::string> cellClasses_;
    bool isObserving_ = false;
};

}  // namespace supportsdk
