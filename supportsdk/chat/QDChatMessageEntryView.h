#pragma once

#include <memory>
#include <string>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Localizer.h"

namespace supportsdk {

/// Hears of the entry bar. Main thread; an operation that is not overridden is silence.
class QDChatMessageEntryViewDelegate {
 public:
    virtual ~QDChatMessageEntryViewDelegate() = default;

    virtual void didChangeText(const std::string& text) { (void)text; }
    virtual void didSelectSend() {}
};

/// The bar in which the user types: its state, without its picture. Main thread.
class SUPPORTSDK_API QDChatMessageEntryView {
 public:
    explicit QDChatMessageEntryView(const Localizer& localizer);

    [[nodiscard]] const std::string& text() const { return text_; }
    /// The user changed the text.
    void setText(const std::string& text);
    /// Appends.
    void addText(const std::string& text);
    /// Empties the bar.
    void reset() { setText(""); }

    /// The user pressed the send button.
    void send();
    [[nodiscard]] bool isSendEnabled() const { return isSendEnabled_; }
    void enableSendButton(bool enabled) { isSendEnabled_ = enabled; }
    /// Enabled exactly when there is text.
    void enableSendButton() { isSendEnabled_ = !text_.empty(); }

    /// Shown while there is no text.
    const std::string placeholder;
    std::weak_ptr<QDChatMessageEntryViewDelegate> delegate;

 private:
    std::string text_;
    bool isSendEnabled_ = false;
};

}  // namespace supportsdk
