#pragma once

namespace supportsdk {

/// Where a part of the chat stands in the view that holds it: in points from the top left.
struct ChatFrame {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    /// Another height; the bottom edge stays where it is.
    void setHeightFromBottom(double newHeight) {
        y += height - newHeight;
        height = newHeight;
    }

    bool operator==(const ChatFrame&) const = default;
};

}  // namespace supportsdk
