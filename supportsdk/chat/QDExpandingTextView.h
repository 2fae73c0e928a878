#pragma once

#include <memory>
#include <string>

#include "supportsdk/chat/ChatFrame.h"
#include "supportsdk/platform/Export.h"

namespace supportsdk {

class QDExpandingTextView;

/// Hears of a text view. Main thread; an operation that is not overridden is silence. Every
/// operation may let go of the text view.
class QDExpandingTextViewDelegate {
 public:
    virtual ~QDExpandingTextViewDelegate() = default;

    virtual void textViewDidChangeText(QDExpandingTextView& textView) { (void)textView; }
    virtual void textViewDidClear(QDExpandingTextView& textView) { (void)textView; }
    virtual void textViewDidResize(QDExpandingTextView& textView) { (void)textView; }
    virtual void textViewDone(QDExpandingTextView& textView) { (void)textView; }
};

/// A text view that grows with its text: its state, without its picture. Main thread.
class SUPPORTSDK_API QDExpandingTextView {
 public:
    /// What it asks of its picture.
    class View {
     public:
        virtual ~View() = default;
        /// Somebody else than the user changed the text: show it, the cursor at its end.
        virtual void textDidChange() {}
        /// Take the keyboard away.
        virtual void resignFirstResponder() {}
    };

    [[nodiscard]] const std::string& text() const { return text_; }
    /// The user changed the text, or somebody who wants it taken as typed: the delegate hears of
    /// it.
    void setText(const std::string& text);
    /// Another text, of which the delegate does not hear.
    void replaceText(std::string text);
    /// Appends; the delegate does not hear of it.
    void addText(const std::string& text) { replaceText(text_ + text); }
    /// Empties it; the delegate hears that.
    void reset();

    void resignFirstResponder();
    /// The user is through with typing.
    void done();

    [[nodiscard]] const ChatFrame& frame() const { return frame_; }
    /// Where its picture stands now, in the entry bar's coordinates.
    void setFrame(const ChatFrame& frame);

    std::weak_ptr<QDExpandingTextViewDelegate> delegate;
    std::weak_ptr<View> view;

 private:
    std::string text_;
    ChatFrame frame_;
};

}  // namespace supportsdk
