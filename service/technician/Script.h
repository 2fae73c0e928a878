#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "supportsdk/platform/Values.h"

namespace supportsdk::service {

/// What a scripted technician knows to say.
struct Script {
    struct Rule {
        /// Any of these, as part of what was said, in small letters.
        std::vector<std::string> words;
        /// Messages for /lab/say, one after the other, without "issue".
        std::vector<Json> say;
        bool resolve = false;
    };

    std::vector<Json> greeting;
    /// The first that fits answers.
    std::vector<Rule> rules;
    /// When none fits.
    std::vector<Json> otherwise;

    /// Reads {"greeting", "rules": [{"words", "say", "resolve"}], "otherwise"}; a text stands for a
    /// plain message. Nothing when it is not that.
    static std::optional<Script> read(std::string_view json);
    /// The one that is built in: greets, helps with a dark screen, resolves after a thank-you.
    static Script standard();

    /// The rule for what somebody said; a rule of "otherwise" when none fits.
    [[nodiscard]] Rule answerTo(const std::string& text) const;
};

}  // namespace supportsdk::service
