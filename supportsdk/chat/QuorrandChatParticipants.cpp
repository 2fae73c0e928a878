#include <locale>
#include <stdexcept>

#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk {

namespace {

std::string keyOf(const std::string& resource) {
    return resource.substr(0, resource.find(';'));
}

/// The user's locale, without touching the one of the process.
std::locale userLocale() {
    try {
        return std::locale("");
    } catch (const std::runtime_error&) {
        return std::locale::classic();
    }
}

/// Compares texts as the user's language sorts them, ignoring case.
class CaseInsensitiveOrder {
 public:
    bool operator()(const std::string& one, const std::string& other) const {
        const auto a = folded(one);
        const auto b = folded(other);
        return std::use_facet<std::collate<wchar_t>>(locale_).compare(
                   a.data(), a.data() + a.size(), b.data(), b.data() + b.size()) < 0;
    }

 private:
    [[nodiscard]] std::wstring folded(const std::string& text) const {
        std::wstring wide;
        for (const char32_t character : decoded(text))
            wide += std::tolower(static_cast<wchar_t>(character), locale_);
        return wide;
    }
    /// Damaged UTF-8 sorts as it comes; it only has to sort the same way each time.
    static std::u32string decoded(std::string_view text) {
        std::u32string characters;
        for (const char byte : text) {
            const auto bits = static_cast<unsigned char>(byte);
            if ((bits & 0xC0U) == 0x80U && !characters.empty()) {
                characters.back() = ((characters.back() << 6U) | (bits & 0x3FU)) & 0x1FFFFFU;
            } else {
                characters += bits < 0x80   ? bits
                              : bits < 0xE0 ? bits & 0x1FU
                              : bits < 0xF0 ? bits & 0x0FU
                                            : bits & 0x07U;
            }
        }
        return characters;
    }

    std::locale locale_ = userLocale();
};

}  // namespace

void QuorrandChat::setParticipantsEligible(std::optional<Json> participants) {
    participantsEligible_ = std::move(participants);
    ++participantsRevision_;
}

void QuorrandChat::refreshEligibleParticipants() {
    tellDelegate(&QuorrandChatDelegate::chatRefreshEligibleParticipants);
}

std::vector<std::string> QuorrandChat::createMentionSuggestions() const {
    std::vector<std::string> suggestions;
    if (participantsEligible_ && participantsEligible_->is_object()) {
        for (const auto& details : *participantsEligible_) {
            if (auto alias = stringForKey(details, "alias"))
                suggestions.push_back(std::move(*alias));
        }
    }
    suggestions.emplace_back("@all");
    std::stable_sort(suggestions.begin(), suggestions.end(), CaseInsensitiveOrder());
    return suggestions;
}

std::optional<std::string> QuorrandChat::getInfoType(
    const std::string& type, const std::optional<std::string>& participant) const {
    if (!participant || !participantsEligible_) return "";
    const auto* details = valueForKey(*participantsEligible_, keyOf(*participant));
    if (!details || !details->is_object()) return "";
    const auto* value = valueForKey(*details, type);
    if (value && value->is_null()) return "";
    return stringForKey(*details, type);
}

bool QuorrandChat::isParticipant(const std::optional<std::string>& participant) const {
    if (ignoreParticipantStatus) return true;
    if (!participant) return false;
    const auto key = keyOf(*participant);
    if (key == "chimebot") return true;
    return participantsEligible_ && valueForKey(*participantsEligible_, key);
}

std::uint64_t QuorrandChat::participantsRevision() const {
    return participantsRevision_ * 2 + (ignoreParticipantStatus ? 1 : 0);
}

}  // namespace supportsdk
