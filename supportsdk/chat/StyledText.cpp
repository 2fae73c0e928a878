#include "supportsdk/chat/StyledText.h"

#include <algorithm>
#include <utility>

#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/core/CaseFolding.h"
#include "supportsdk/core/LowerCased.h"

namespace supportsdk {

namespace {

void appendUtf8(std::string& text, wchar_t character) {
    const auto code = static_cast<char32_t>(character);
    const auto tail = [code](unsigned shift) {
        return static_cast<char>(0x80U | ((code >> shift) & 0x3FU));
    };
    if (code < 0x80) {
        text += static_cast<char>(code);
    } else if (code < 0x800) {
        text += {static_cast<char>(0xC0U | (code >> 6U)), tail(0)};
    } else if (code < 0x10000) {
        text += {static_cast<char>(0xE0U | (code >> 12U)), tail(6), tail(0)};
    } else {
        text += {static_cast<char>(0xF0U | (code >> 18U)), tail(12), tail(6), tail(0)};
    }
}

/// In lower case, whatever the script.
std::string lowered(std::string_view text) {
    const bool isAscii = std::all_of(text.begin(), text.end(), [](char letter) {
        return static_cast<unsigned char>(letter) < 0x80;
    });
    if (isAscii) return lowerCased(std::string(text));
    std::string lower;
    for (const auto character : caseFolded(text)) appendUtf8(lower, character);
    return lower;
}

bool isWord(std::string_view text) {
    const auto characters = caseFolded(text);
    return !characters.empty() &&
           std::all_of(characters.begin(), characters.end(), isWordCharacter);
}

/// The picture for `text`, which begins and ends with a bracket; null when it is no emoticon.
std::shared_ptr<const AnimatedImage> emoticon(const QuorrandChat& chat, std::string_view text) {
    const auto known = chat.emoticonsByName.find(lowered(text));
    if (known == chat.emoticonsByName.end() || !isWord(text.substr(1, text.size() - 2)))
        return nullptr;
    return chat.imageForEmoticon(known->second);
}

ImagePtr stillOf(const AnimatedImage& animation) {
    const auto& frames = animation.frames;
    return frames.size() < 3 ? frames.front().image : frames[frames.size() / 2].image;
}

void appendText(StyledText& styled, std::string_view text) {
    if (!text.empty()) styled.pieces.emplace_back(std::string(text));
}

}  // namespace

std::string StyledText::plainText() const {
    std::string text;
    for (const auto& piece : pieces) {
        const auto* picture = std::get_if<AnimatedTextAttachment>(&piece);
        text += picture ? picture->text : std::get<std::string>(piece);
    }
    return text;
}

StyledText attributedStringFromChatMessage(const QuorrandChat& chat, const std::string& text) {
    StyledText styled;
    std::size_t shown = 0;
    auto open = text.find('(');
    while (open != std::string::npos) {
        const auto end = text.find_first_of("()", open + 1);
        if (end == std::string::npos) break;
        if (text[end] == '(') {
            open = end;
            continue;
        }
        const auto written = std::string_view(text).substr(open, end + 1 - open);
        if (auto animation = emoticon(chat, written)) {
            appendText(styled, std::string_view(text).substr(shown, open - shown));
            auto still = stillOf(*animation);
            styled.pieces.emplace_back(AnimatedTextAttachment{
                std::string(written), std::move(still), std::move(animation)});
            shown = end + 1;
        }
        open = text.find('(', end + 1);
    }
    appendText(styled, std::string_view(text).substr(shown));
    return styled;
}

}  // namespace supportsdk
