#include "hosts/cli/ChatAdapter.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <map>

#include "supportsdk/chat/QDChatActionButton.h"
#include "supportsdk/chat/QDChatViewModel.h"

namespace supportsdk::host {

namespace {

/// Beyond this a text counts as pasted.
constexpr std::size_t longestTypedText = 4096;

const char* nameOf(ChatMessageType type) {
    switch (type) {
        case ChatMessageType::CallInvitation:
            return "call";
        case ChatMessageType::Attachment:
            return "attachment";
        case ChatMessageType::KnowledgeBase:
            return "kb";
        case ChatMessageType::Text:
            break;
    }
    return "text";
}

/// RFC 3339, in UTC.
std::string dateText(Clock::Time time) {
    const auto seconds = std::chrono::system_clock::to_time_t(time);
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    std::array<char, 64> text{};
    const auto length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    return {text.data(), length};
}

void put(Json& fields, const char* key, const std::optional<std::string>& text) {
    if (text && !text->empty()) fields[key] = *text;
}

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

}  // namespace

ChatAdapter::ChatAdapter(std::shared_ptr<QDChatViewController> chat, std::function<void()> reloaded)
    : ScreenAdapter(chat), chat_(std::move(chat)), reloaded_(std::move(reloaded)) {}

Json ChatAdapter::state() const {
    const auto& engine = chat_->engine();
    Json fields = {{"readOnly", chat_->isReadOnly},
                   {"typing", engine.typingType != 0},
                   {"online", engine.isRoomJoined()},
                   {"groups", Json::array()}};
    if (const auto& entry = chat_->entryView; entry && !chat_->isReadOnly) {
        fields["entry"] = {{"text", entry->text()}, {"sendEnabled", entry->isSendEnabled()}};
    }
    for (const auto& group : engine.viewModel->messageGroups()) {
        Json lines = Json::array();
        for (const auto& line : group) lines.push_back(describeLine(*line));
        Json shown = {{"lines", std::move(lines)}};
        if (const auto& date = group.front()->date) shown["date"] = dateText(*date);
        fields["groups"].push_back(std::move(shown));
    }
    return fields;
}

Json ChatAdapter::describeLine(const QuorrandChatMessage& line) const {
    Json fields = {{"id", line.id.value_or("")},
                   {"mine", line.isMe},
                   {"type", nameOf(line.messageType)},
                   {"disabled", line.disabled}};
    put(fields, "from", line.from);
    const auto name = chat_->engine().getInfoType("name", line.from);
    put(fields, "name", name && !name->empty() ? name : line.fromName);
    put(fields, "text", line.text);
    put(fields, "url", line.url);
    put(fields, "preview", line.preview);
    if (line.date) fields["date"] = dateText(*line.date);
    if (line.isKBMessage()) {
        fields["kb"] = {{"id", *line.kb_id}, {"preview", *line.kb_preview}};
        put(fields["kb"], "title", line.kb_title);
    }
    for (const auto& piece : line.attributedString.pieces) {
        const auto* picture = std::get_if<AnimatedTextAttachment>(&piece);
        if (picture) fields["emoticons"].push_back(picture->text);
    }
    for (const auto& button : line.chatActionButtons) {
        fields["buttons"].push_back({{"label", button->label},
                                     {"enabled", button->isEnabled},
                                     {"selected", button->isSelected}});
    }
    return fields;
}

bool ChatAdapter::pressControl(const std::string& label) {
    const auto& groups = chat_->engine().viewModel->messageGroups();
    for (auto group = groups.rbegin(); group != groups.rend(); ++group) {
        for (auto line = group->rbegin(); line != group->rend(); ++line) {
            for (const auto& button : (*line)->chatActionButtons) {
                if (button->label != label || !button->isEnabled) continue;
                // The list may change while it acts.
                const auto pressed = button;
                pressed->performAction();
                return true;
            }
        }
    }
    return false;
}

bool ChatAdapter::tapLine(const std::string& id, const std::string& part) {
    static const std::map<std::string, ChatLinePart> parts = {
        {"message", ChatLinePart::message},
        {"attachment", ChatLinePart::attachment},
        {"kb", ChatLinePart::kb},
        {"avatar", ChatLinePart::avatar},
    };
    const auto found = parts.find(part);
    const auto line = found == parts.end() ? nullptr : lineOf(id);
    return line && chat_->engine().lineWasTapped(found->second, line);
}

std::shared_ptr<QuorrandChatMessage> ChatAdapter::lineOf(const std::string& id) const {
    const auto& groups = chat_->engine().viewModel->messageGroups();
    for (auto group = groups.rbegin(); group != groups.rend(); ++group) {
        const auto found = std::find_if(group->rbegin(), group->rend(),
                                        [&](const auto& line) { return line->id == id; });
        if (found != group->rend()) return *found;
    }
    return nullptr;
}

bool ChatAdapter::type(const std::string& text, const std::optional<std::string>& field) {
    const auto entry = chat_->entryView;
    if (field || !entry || chat_->isReadOnly) return false;
    if (text.size() <= longestTypedText) {
        entry->setText("");
        for (std::size_t end = 1; end < text.size(); ++end) {
            if (!isContinuation(text[end])) entry->setText(text.substr(0, end));
        }
    }
    entry->setText(text);
    return true;
}

bool ChatAdapter::send() {
    const auto entry = chat_->entryView;
    if (!entry || chat_->isReadOnly || !entry->isSendEnabled()) return false;
    entry->send();
    return true;
}

bool ChatAdapter::pull() {
    chat_->refreshLists();
    return true;
}

}  // namespace supportsdk::host
