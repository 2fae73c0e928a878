#include "supportsdk/chat/QDChatActionButton.h"

#include <algorithm>

#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk {

namespace {

/// Labels may be numbers.
std::string labelText(const Json* value) {
    if (!value) return "";
    if (const auto* text = value->get_ptr<const std::string*>()) return *text;
    return value->is_number() ? dumpJson(*value) : "";
}

}  // namespace

QDChatActionButton::QDChatActionButton(const std::shared_ptr<QuorrandChat>& chat, const Json& entry)
    : label(labelText(valueForKey(entry, "lbl"))),
      key(stringForKey(entry, "key")),
      action(stringForKey(entry, "uri")),
      chat_(chat) {
    const auto& selected = chat->selectedActions;
    isSelected = key && std::find(selected.begin(), selected.end(), *key) != selected.end();
}

void QDChatActionButton::performAction() {
    if (!isEnabled) return;
    isSelected = !isSelected;
    if (const auto chat = chat_.lock(); chat && key) {
        auto& selected = chat->selectedActions;
        if (std::find(selected.begin(), selected.end(), *key) == selected.end())
            selected.push_back(*key);
    }
    // The handler may lead to the end of the line that owns this button.
    const auto handler = handleButtonAction;
    const auto whatItSays = label;
    const auto address = action;
    if (handler) handler(whatItSays, address);
}

}  // namespace supportsdk
