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

/// The bar's button shows a picture and has no words of its own.
constexpr std::string_view attachLabel = "Attach";

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
    if (const auto bar = entry()) fields["entry"] = describeEntry(*bar);
    for (const auto& group : engine.viewModel->messageGroups()) {
        Json lines = Json::array();
        for (const auto& line : group) lines.push_back(describeLine(*line));
        Json shown = {{"lines", std::move(lines)}};
        if (const auto& date = group.front()->date) shown["date"] = dateText(*date);
        fields["groups"].push_back(std::move(shown));
    }
    return fields;
}

std::shared_ptr<QDChatMessageEntryView> ChatAdapter::entry() const {
    return chat_->isReadOnly ? nullptr : chat_->entryView;
}

Json ChatAdapter::describeEntry(const QDChatMessageEntryView& bar) const {
    Json fields = {{"text", bar.text()}, {"sendEnabled", bar.isSendEnabled()}};
    const auto& list = *bar.autocompletionTableView;
    for (std::size_t index = 0; !list.isHidden && index < list.numberOfRows(); ++index) {
        const auto row = list.rowAt(index);
        if (!row) continue;
        Json shown = {{"label", row->text}};
        put(shown, "detail", row->detail);
        if (row->detail) shown["image"] = row->image ? "found" : "missing";
        fields["suggestions"].push_back(std::move(shown));
    }
    return fields;
}

void ChatAdapter::entryDidChange() {
    const auto bar = entry();
    if (!bar || isActing_) return;
    auto shown = describeEntry(*bar);
    if (std::exchange(knownEntry_, shown) != shown) reloaded_();
}

Json ChatAdapter::describeLine(const QuorrandChatMessage& line) const {
    // A line of a transcript has no kind.
    const auto* type = line.isValidMessage ? nameOf(line.messageType) : "text";
    Json fields = {{"id", line.id.value_or("")},
                   {"mine", line.isMe},
                   {"type", type},
                   {"disabled", line.disabled}};
    put(fields, "from", line.from);
    put(fields, "name", chat_->engine().viewModel->usernameOf(line));
    put(fields, "text", line.text);
    put(fields, "url", line.url);
    put(fields, "preview", line.preview);
    if (fields.contains("preview")) fields["previewShown"] = line.isPreviewLoaded();
    if (line.avatarImage) fields["avatar"] = line.isAvatarLoaded();
    if (line.date) fields["date"] = dateText(*line.date);
    if (line.isKBMessage()) {
        fields["kb"] = {{"id", *line.kb_id}, {"preview", *line.kb_preview}};
        put(fields["kb"], "title", line.kb_title);
    }
    for (const auto& piece : line.attributedString().pieces) {
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
    if (const auto bar = label == attachLabel ? entry() : nullptr) {
        bar->attach();
        return true;
    }
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
    const auto bar = entry();
    if (field || !bar) return false;
    isActing_ = true;
    if (text.size() <= longestTypedText) {
        bar->setText("");
        for (std::size_t end = 1; end < text.size(); ++end) {
            if (!isContinuation(text[end])) bar->setText(text.substr(0, end));
        }
    }
    bar->setText(text);
    isActing_ = false;
    // The text itself is no news; what is suggested for it is.
    knownEntry_["text"] = text;
    knownEntry_["sendEnabled"] = bar->isSendEnabled();
    entryDidChange();
    return true;
}

bool ChatAdapter::select(std::size_t section, std::size_t row) {
    const auto bar = entry();
    if (!bar || section != 0) return false;
    const auto list = bar->autocompletionTableView;
    if (list->isHidden || row >= list->numberOfRows()) return false;
    // It stands between two words and between shown and hidden suggestions meanwhile.
    isActing_ = true;
    list->didSelectRow(row);
    isActing_ = false;
    entryDidChange();
    return true;
}

bool ChatAdapter::send() {
    const auto bar = entry();
    if (!bar || !bar->isSendEnabled()) return false;
    bar->send();
    return true;
}

bool ChatAdapter::pull() {
    chat_->refreshLists();
    return true;
}

}  // namespace supportsdk::host
