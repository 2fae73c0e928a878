#include <algorithm>
#include <locale>
#include <stdexcept>
#include <utility>

#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/core/CaseFolding.h"
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

/// Sorts texts as the user's language does, ignoring case. Each text is prepared once and not with
/// each comparison: a desk may have thousands of participants.
void sortIgnoringCase(std::vector<std::string>& texts) {
    const auto locale = userLocale();
    const auto& order = std::use_facet<std::collate<wchar_t>>(locale);
    std::vector<std::pair<std::wstring, std::string>> prepared;
    prepared.reserve(texts.size());
    for (auto& text : texts) {
        const auto folded = caseFolded(text);
        prepared.emplace_back(order.transform(folded.data(), folded.data() + folded.size()),
                              std::move(text));
    }
    std::stable_sort(prepared.begin(), prepared.end(),
                     [](const auto& one, const auto& other) { return one.first < other.first; });
    std::transform(prepared.begin(), prepared.end(), texts.begin(),
                   [](auto& text) { return std::move(text.second); });
}

}  // namespace

void QuorrandChat::setParticipantsEligible(std::optional<Json> participants) {
    // Each line of a stranger has them asked for again, and mostly the answer is the same: no
    // reason to group a long chat anew.
    if (participants == participantsEligible_) return;
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
    sortIgnoringCase(suggestions);
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
