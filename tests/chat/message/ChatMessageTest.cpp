#include "tests/chat/ChatFixture.h"

namespace supportsdk::test {
namespace {

using namespace std::chrono_literals;

class ChatMessage : public ChatFixture, public testing::Test {};

TEST_F(ChatMessage, OnlyRoomTextAndKnownEnvelopesAreLines) {
    const auto state = [](const std::string& name) {
        return "<" + name + " xmlns='http://jabber.org/protocol/chatstates'/>";
    };
    const auto secret = [](const std::string& word) {
        return Json{{"secret", QuorrandChatMessage::MD5(word)}, {"message", "hi"}}.dump();
    };
    const struct {
        const char* what;
        LineXml xml;
        bool valid;
        std::string text;
    } cases[] = {
        {"plain words, trimmed", {.body = " \n Hello there \t"}, true, "Hello there"},
        {"in every script",
         {.body = "\xC2\xA0\xE3\x80\x80\xC3\xA9\xE2\x80\xA9\xC2\x85"},
         true,
         "\xC3\xA9"},
        {"half a character is no JSON",
         {.body = R"({"secret": "\ud800"})"},
         true,
         R"({"secret": "\ud800"})"},
        {"nor is half an object", {.body = R"({"secret": "x",)"}, true, R"({"secret": "x",)"},
        {"a number is what somebody typed", {.body = "42"}, true, "42"},
        {"and a quotation", {.body = "\"ok\""}, true, "\"ok\""},
        {"nesting without end is text",
         {.body = std::string(5000, '[')},
         true,
         std::string(5000, '[')},
        {"an array", {.body = "[1, 2]"}, false, "[1, 2]"},
        {"type in capitals", {.body = "x", .type = "GroupChat"}, true, "x"},
        {"one-to-one", {.body = secret("plain"), .type = "chat"}, false, secret("plain")},
        {"an error", {.body = "x", .type = "error"}, false, "x"},
        {"composing goes through", {.body = "x", .children = state("composing")}, true, "x"},
        {"but not together with another",
         {.body = "x", .children = state("composing") + state("paused")},
         false,
         "x"},
        {"active does not", {.body = "x", .children = state("active")}, false, "x"},
        {"unsigned", {.body = R"({"message": "hi"})"}, false, R"({"message": "hi"})"},
        {"signed with a number", {.body = R"({"secret": 5})"}, false, R"({"secret": 5})"},
        {"of unknown kind", {.body = secret("sticker")}, false, secret("sticker")},
        {"the kit's own data", {.body = secret("data")}, false, secret("data")},
        {"a notification", {.body = secret("notification")}, false, secret("notification")},
        {"general form", {.body = secret("external_chat")}, true, "hi"},
    };
    chat->showNotifications = true;
    for (const auto& [what, xml, valid, text] : cases) {
        SCOPED_TRACE(what);
        const auto message = line(xml);
        EXPECT_EQ(message->isValidMessage, valid);
        EXPECT_EQ(message->text, text);
    }
    const auto bare = Stanza::parse("<message type='groupchat' from='r@x/a'><active/></message>");
    EXPECT_FALSE(QuorrandChatMessage::createWithXMPPMessage(*chat, bare)->isValidMessage);
}

TEST_F(ChatMessage, SenderIsTheNicknameUpToTheSemicolon) {
    chat->me = "users:7";
    chat->setParticipantsEligible(
        Json{{"users:7", {{"name", "Ada"}}}, {"agent:1", {{"name", "Bo"}}}});

    const auto mine = line({.body = "hi", .from = "room@x/users:7;tab/let"});
    EXPECT_EQ(mine->from, "users:7");
    EXPECT_EQ(mine->fromName, "Ada");
    EXPECT_TRUE(mine->isMe);

    // The name in an envelope is anybody's claim; what counts is the list of participants.
    const auto claimed = envelope(
        "plain",
        {{"context", {{"from", "agent:1"}, {"from_name", "The Boss"}, {"from_avatar", 3}}}});
    EXPECT_EQ(claimed->from, "agent:1");
    EXPECT_EQ(claimed->fromName, "Bo");
    EXPECT_EQ(claimed->avatar, std::nullopt);
    EXPECT_FALSE(claimed->isMe);

    chat->me.reset();
    for (const auto* nobody : {"room@x", ""}) {
        const auto message = line({.body = "hi", .from = nobody});
        EXPECT_EQ(message->from, "");
        EXPECT_EQ(message->fromName, "");
        EXPECT_FALSE(message->isMe);
    }
}

TEST_F(ChatMessage, InvitationNamesTheCallWhereOthersNameTheSender) {
    const Json json = {{"message", "join me"},
                       {"context", {{"from", "call-9"}, {"from_user", "agent:1"}}},
                       {"attachment", {{"url", "http://x/y"}}},
                       {"actions", {{{"key", "k"}}}}};
    const auto invitation = envelope("video_chat", json);
    EXPECT_EQ(invitation->callId, "call-9");
    EXPECT_EQ(invitation->from, "agent:1");
    EXPECT_EQ(invitation->messageType, ChatMessageType::CallInvitation);
    EXPECT_EQ(invitation->url, std::nullopt);
    EXPECT_FALSE(invitation->isChatButtonMessage());

    const auto general = envelope("plain", json);
    EXPECT_EQ(general->from, "call-9");
    EXPECT_EQ(general->callId, std::nullopt);
    EXPECT_EQ(general->messageType, ChatMessageType::Attachment);
}

TEST_F(ChatMessage, WrongTypesInEveryKeyDoNoHarm) {
    const Json whole = {{"message", "m"},
                        {"context", {{"from", "f"}, {"from_name", "n"}, {"from_avatar", "a"}}},
                        {"attachment", {{"preview", "p"}, {"url", "u"}}},
                        {"actions", {{{"key", "k"}, {"lbl", "l"}, {"uri", "u"}, {"perms", ""}}}},
                        {"kb", {{"title", "t"}, {"preview", "p"}, {"id", "i"}}}};
    const auto flat = whole.flatten();
    for (const auto& [path, value] : flat.items()) {
        for (auto pointer = Json::json_pointer(path); !pointer.empty(); pointer.pop_back()) {
            for (const Json& wrong : {Json(), Json(true), Json(-7), Json(1e300), Json("\0\xFF"),
                                      Json(std::string("a\0b", 3)), Json::array({Json::array()}),
                                      Json{{"from", Json::object()}}}) {
                auto damaged = whole;
                damaged[pointer] = wrong;
                damaged["secret"] = QuorrandChatMessage::MD5("plain");
                const auto message =
                    line({.body = damaged.dump(-1, ' ', true, Json::error_handler_t::replace)});
                EXPECT_TRUE(message->isValidMessage) << damaged;
                EXPECT_EQ(message->id->size(), 32);
                const auto copy = QuorrandChatMessage::createWithDict(*chat, message->dict());
                EXPECT_EQ(copy->id, message->id);
                EXPECT_EQ(copy->chatActionButtons.size(), message->chatActionButtons.size());
            }
        }
    }
}

TEST_F(ChatMessage, ArticlePreviewIsDecodedOrReplacedByASentence) {
    const std::string sentence = "Click here to go to the knowledge base article.";
    const std::pair<const char*, std::string> cases[] = {
        {"Reset+the+caf%C3%A9%21", "Reset the caf\xC3\xA9!"},
        {"", sentence},
        {"50% off", sentence},
        {"cut%4", sentence},
        {"%FF", sentence},
        {"a%00b", std::string("a\0b", 3)},
    };
    for (const auto& [sent, shown] : cases) {
        const auto message =
            envelope("plain", {{"kb", {{"preview", sent}, {"id", "4"}, {"preview_length", 12}}}});
        EXPECT_EQ(message->kb_preview, shown) << sent;
        EXPECT_EQ(message->messageType, ChatMessageType::KnowledgeBase);
        EXPECT_EQ(message->kb_preview_length, 12);
    }
}

TEST_F(ChatMessage, LinesWithoutIdAreOneWithinAMinute) {
    const auto at = [this](const char* stamp, const char* id = "") {
        return line(
            {.body = "same",
             .id = id,
             .children = std::string("<delay xmlns='urn:xmpp:delay' stamp='") + stamp + "'/>"});
    };
    const auto first = at("2026-01-31T10:00:05Z");
    EXPECT_TRUE(first->isDelayed);
    EXPECT_EQ(first->date->time_since_epoch() % 1min, 0ns);
    EXPECT_EQ(first->id, at("2026-01-31T10:00:50Z")->id);
    EXPECT_NE(first->id, at("2026-01-31T10:01:00Z")->id);
    EXPECT_EQ(at("2026-01-31T10:00:05Z", "abc")->id, "abc");
    EXPECT_EQ(first->id, QuorrandChatMessage::MD5("users:7same2026-01-31 10:00:00"));

    for (const auto* stamp : {"9999-12-31T23:59:59Z", "0001-01-01T00:00:00Z", "-1", ""})
        EXPECT_TRUE(at(stamp)->date) << stamp;

    const auto live = line({.body = "x"});
    EXPECT_FALSE(live->isDelayed);
    EXPECT_EQ(live->date, Clock::Time(1769860800s));
}

}  // namespace
}  // namespace supportsdk::test
