#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace supportsdk {

/// Lines that never got to their room while nobody listened who could have been told, until
/// somebody comes back to their conversation. Main thread.
class UnsentTexts {
 public:
    using Conversation = std::optional<std::string>;
    using Texts = std::vector<std::string>;

    /// Of all conversations together, the newest 100 texts are kept.
    void keep(const Conversation& conversation, const Texts& texts);

    /// Those of one conversation in the order of sending, once.
    [[nodiscard]] Texts take(const Conversation& conversation);

 private:
    struct Entry {
        Conversation conversation;
        std::string text;
    };
    std::deque<Entry> entries_;
};

}  // namespace supportsdk
