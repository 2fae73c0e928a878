#pragma once

#include <deque>
#include <string>
#include <vector>

#include "supportsdk/platform/Registration.h"

namespace supportsdk {

/// The lines that went out and that the room has not reflected yet, in the order of sending. Main
/// thread.
class SentLines {
 public:
    using Texts = std::vector<std::string>;

    /// `nickname` is the sender's in the room. `overdue` is dropped as soon as the line needs no
    /// watching any more.
    void add(std::string id, std::string nickname, std::string text, Registration overdue);

    /// The room has reflected the line `id` of its occupant `sender`. Nothing happens unless that
    /// was the sender, whose nickname may by now be `nickname`: any occupant can copy an id.
    void confirm(const std::string& id, const std::string& sender, const std::string& nickname);

    /// The lines on their way are no longer watched.
    void stopWatching();

    /// The connection is lost: the history of the room will tell which lines had got there.
    void doubtAll();

    /// Forgets the line that the room has refused; its text, if there was one.
    [[nodiscard]] Texts takeRefused(const std::string& id);
    /// Forgets the lines that were sent before a connection was lost.
    [[nodiscard]] Texts takeDoubtful();
    [[nodiscard]] Texts takeAll();
    void clear() { lines_.clear(); }
    [[nodiscard]] bool isEmpty() const { return lines_.empty(); }

 private:
    struct Line {
        std::string id;
        std::string nickname;
        std::string text;
        Registration overdue;
        bool isDoubtful = false;
    };

    template <typename Condition>
    [[nodiscard]] Texts take(Condition condition);

    std::deque<Line> lines_;
};

}  // namespace supportsdk
