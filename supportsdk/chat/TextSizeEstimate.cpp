#include "supportsdk/chat/TextSizeEstimate.h"

#include <algorithm>

namespace supportsdk {

namespace {

// In hundredths of the font size: whole numbers, so that what just fits does fit.
constexpr int lineHeight = 120;
constexpr int letterWidth = 55;
constexpr int wideLetterWidth = 100;
constexpr int maximumLines = 50;

/// Fills lines with what has a width.
class LineFiller {
 public:
    explicit LineFiller(int maximumWidth) : maximumWidth_(maximumWidth) {}

    void add(int width) {
        if (line_ + width > maximumWidth_ && line_ > 0) {
            // The word begun at the end of the line goes on to the next, unless it fills all of it.
            const int moved = word_ < line_ ? word_ : 0;
            breakLine();
            line_ = moved;
            word_ = moved;
        }
        line_ += width;
        word_ += width;
        widest_ = std::max(widest_, std::min(line_, maximumWidth_));
    }
    void addBlank(int width) {
        add(width);
        word_ = 0;
    }
    void breakLine() {
        line_ = 0;
        word_ = 0;
        ++lines_;
    }

    [[nodiscard]] bool isFull() const { return lines_ >= maximumLines; }
    [[nodiscard]] int widest() const { return widest_; }
    [[nodiscard]] int lines() const { return std::min(lines_, maximumLines); }

 private:
    const int maximumWidth_;
    int line_ = 0;
    /// The part of the line since its last blank.
    int word_ = 0;
    int widest_ = 0;
    int lines_ = 1;
};

void addText(LineFiller& filler, const std::string& text) {
    for (const char letter : text) {
        if (filler.isFull()) return;
        const auto byte = static_cast<unsigned char>(letter);
        const bool isContinuation = (byte & 0xC0U) == 0x80U;
        if (isContinuation) continue;
        if (letter == '\n') {
            filler.breakLine();
        } else if (letter == ' ') {
            filler.addBlank(letterWidth);
        } else {
            // Three bytes in UTF-8 and more: scripts with wide letters, and symbols.
            filler.add(byte < 0xE0 ? letterWidth : wideLetterWidth);
        }
    }
}

}  // namespace

ChatCellSize estimatedTextSize(const StyledText& text, double fontSize, double maximumWidth) {
    const double unit = fontSize / 100;
    LineFiller filler(static_cast<int>(maximumWidth / unit));
    for (const auto& piece : text.pieces) {
        if (filler.isFull()) break;
        if (const auto* words = std::get_if<std::string>(&piece)) {
            addText(filler, *words);
        } else {
            filler.add(lineHeight);
        }
    }
    return {filler.widest() * unit, filler.lines() * lineHeight * unit};
}

}  // namespace supportsdk
