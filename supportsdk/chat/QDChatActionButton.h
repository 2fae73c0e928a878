#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "supportsdk/chat/ChatLineParts.h"
#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

class QuorrandChat;

/// A button that an agent or bot put into a line. Main thread.
class SUPPORTSDK_API QDChatActionButton {
 public:
    using Handler =
        std::function<void(const std::string& label, const std::optional<std::string>& action)>;

    /// Reads "key", "lbl" and "uri" of an entry of a line's actions. A key that is among the
    /// engine's `selectedActions` makes the button start selected.
    QDChatActionButton(const std::shared_ptr<QuorrandChat>& chat, const Json& entry);

    /// A tap; nothing happens while it is disabled. Toggles the selection, remembers the key in the
    /// engine's `selectedActions`, where a later tap leaves it, and calls `handleButtonAction`.
    void performAction();

    /// What it says; "" when the entry says nothing.
    std::string label;
    std::optional<std::string> key;
    /// The address.
    std::optional<std::string> action;
    bool isSelected = false;
    bool isEnabled = true;
    /// Of its frame, in points; whoever draws it may put in what it has measured.
    ChatCellSize size;
    Handler handleButtonAction;

 private:
    std::weak_ptr<QuorrandChat> chat_;
};

}  // namespace supportsdk
