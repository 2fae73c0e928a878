#include "supportsdk/chat/QDExpandingTextView.h"

#include <utility>

namespace supportsdk {

void QDExpandingTextView::setText(const std::string& text) {
    replaceText(text);
    if (const auto listener = delegate.lock()) listener->textViewDidChangeText(*this);
}

void QDExpandingTextView::replaceText(std::string text) {
    text_ = std::move(text);
    if (const auto picture = view.lock()) picture->textDidChange();
}

void QDExpandingTextView::reset() {
    replaceText("");
    if (const auto listener = delegate.lock()) listener->textViewDidClear(*this);
}

void QDExpandingTextView::resignFirstResponder() {
    if (const auto picture = view.lock()) picture->resignFirstResponder();
}

void QDExpandingTextView::done() {
    if (const auto listener = delegate.lock()) listener->textViewDone(*this);
}

void QDExpandingTextView::setFrame(const ChatFrame& frame) {
    const bool isResized = frame.width != frame_.width || frame.height != frame_.height;
    frame_ = frame;
    const auto listener = isResized ? delegate.lock() : nullptr;
    if (listener) listener->textViewDidResize(*this);
}

}  // namespace supportsdk
