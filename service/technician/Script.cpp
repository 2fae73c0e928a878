#include "service/technician/Script.h"

#include <algorithm>
#include <cctype>

#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {

constexpr char standardScript[] = R"script({
  "greeting": ["Hello, this is support (smile) How can I help?"],
  "rules": [
    {"words": ["thank", "bye"], "resolve": true,
     "say": ["You are welcome! I have marked this case as resolved."]},
    {"words": ["it is green", "green light"],
     "say": [{"kind": "kb", "message": "Good. This article shows the button that helps:",
              "kb": {"id": "kb-3", "title": "The screen stays dark",
                     "preview": "Check+that+the+light+is+green.", "preview_length": 30}}]},
    {"words": ["dark", "black", "screen", "display"],
     "say": [{"kind": "extended", "message": "I am sorry to hear that. What does the status light say?",
              "actions": [
                {"key": "green", "lbl": "It is green", "uri": "qd-msg://It is green"},
                {"key": "off", "lbl": "It is off", "uri": "qd-msg://The light is off"}]}]},
    {"words": ["light is off"],
     "say": ["Then the display has no power. Please check the cable at its back."]},
    {"words": ["the light", "picture"],
     "say": ["I see it (bulb) That is as it should be."]},
    {"words": ["/files/"],
     "say": ["Thank you for the picture. What does it show?"]},
    {"words": ["article", "help", "manual"],
     "say": [{"kind": "kb", "message": "This may help:",
              "kb": {"id": "kb-3", "title": "The screen stays dark",
                     "preview": "Check+that+the+light+is+green.", "preview_length": 30}}]},
    {"words": ["agent", "human", "person"],
     "say": ["You are talking to one."]}
  ],
  "otherwise": ["I see. Can you tell me more about it?"]
})script";

std::vector<Json> messagesOf(const Json& list) {
    std::vector<Json> messages;
    for (const auto& entry : list) {
        if (entry.is_object()) messages.push_back(entry);
        if (entry.is_string()) messages.push_back({{"kind", "text"}, {"message", entry}});
    }
    return messages;
}

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
}

}  // namespace

std::optional<Script> Script::read(std::string_view json) {
    const auto parsed = parseJson(json);
    if (!parsed || !parsed->is_object()) return std::nullopt;
    Script script;
    script.greeting = messagesOf(arrayForKey(*parsed, "greeting"));
    script.otherwise = messagesOf(arrayForKey(*parsed, "otherwise"));
    for (const auto& entry : arrayForKey(*parsed, "rules")) {
        Rule rule;
        for (const auto& word : arrayForKey(entry, "words")) {
            if (word.is_string()) rule.words.push_back(lowered(word.get<std::string>()));
        }
        rule.say = messagesOf(arrayForKey(entry, "say"));
        rule.resolve = boolForKey(entry, "resolve");
        script.rules.push_back(std::move(rule));
    }
    return script;
}

Script Script::standard() {
    return read(standardScript).value_or(Script());
}

Script::Rule Script::answerTo(const std::string& text) const {
    const auto said = lowered(text);
    for (const auto& rule : rules) {
        const bool fits = std::any_of(rule.words.begin(), rule.words.end(), [&](const auto& word) {
            return said.find(word) != std::string::npos;
        });
        if (fits) return rule;
    }
    return {{}, otherwise, false};
}

}  // namespace supportsdk::service
