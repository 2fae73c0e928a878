#include "tests/chat/ChatFixture.h"

namespace supportsdk::test {
namespace {

using namespace std::chrono_literals;

class ChatMessageForms : public ChatFixture, public testing::Test {};

TEST_F(ChatMessageForms, TranscriptHasNoSenderAndKeepsItsSeconds) {
    fakes.clock->offset = 3600s;
    const auto transcript = QuorrandChatMessage::createWithTranscript(
        *chat, {{"from", "Bo"}, {"message", " hi "}, {"sent", "2026-01-31 13:00:30.250"}});
    EXPECT_EQ(transcript->from, "");
    EXPECT_EQ(transcript->fromName, "");
    EXPECT_EQ(transcript->text, "hi");
    EXPECT_EQ(transcript->date, Clock::Time(1769860830s + 250ms));
    EXPECT_EQ(transcript->id, QuorrandChatMessage::MD5("hi2026-01-31 13:00:30"));
    EXPECT_FALSE(transcript->isMe);
    EXPECT_FALSE(transcript->isValidMessage);
    EXPECT_EQ(static_cast<int>(transcript->messageType), 0);

    for (const auto* sent : {"2026-02-30 13:00:30.250", "2026-01-31 24:00:00.000", "9999-01-01",
                             "9999-01-01 00:00:00.000", "2026-01-31T13:00:30.250Z", ""}) {
        const auto undated =
            QuorrandChatMessage::createWithTranscript(*chat, {{"message", "hi"}, {"sent", sent}});
        EXPECT_EQ(undated->date, std::nullopt) << sent;
        EXPECT_EQ(undated->id, QuorrandChatMessage::MD5("hi"));
    }
    EXPECT_EQ(QuorrandChatMessage::createWithTranscript(*chat, nullptr)->text, std::nullopt);
}

TEST_F(ChatMessageForms, DictionaryTakesALineThereAndBack) {
    auto before = envelope("kb", {{"message", "read this"},
                                  {"attachment", {{"url", "http://x/y"}}},
                                  {"actions", {{{"key", "k"}, {"lbl", "L"}}}},
                                  {"kb", {{"preview", "p"}, {"id", "4"}, {"preview_length", 3}}}});
    before->fromNickname = "nick";
    const auto dictionary = before->dict();
    EXPECT_EQ(dictionary.size(), 22);
    EXPECT_EQ(dictionary["callId"], "");
    const auto after = QuorrandChatMessage::createWithDict(*chat, dictionary);
    EXPECT_EQ(after->dict(), dictionary);
    EXPECT_TRUE(after->isValidMessage);
    EXPECT_EQ(after->chatActionButtons.size(), 1);
    EXPECT_FALSE(after->xmppMessage());
    EXPECT_TRUE(before->isFoundInArray({{{"id", "other"}}, dictionary}));
    EXPECT_FALSE(before->isFoundInArray({{{"id", "other"}}, 5}));

    const auto hostile = QuorrandChatMessage::createWithDict(
        *chat, {{"from", "a;b"}, {"date", 1e300}, {"buttonActions", {{"key", 1}}}, {"id", 5}});
    EXPECT_EQ(hostile->from, "a");
    EXPECT_EQ(hostile->date, Clock::Time(1769860800s));
    EXPECT_EQ(hostile->id->size(), 32);
    EXPECT_EQ(hostile->buttonActions, std::nullopt);
}

TEST_F(ChatMessageForms, ArchiveLosesTheNicknameAndTheArticle) {
    const auto before = envelope("kb", {{"message", "read"},
                                        {"kb", {{"preview", "p"}, {"id", "4"}}},
                                        {"actions", {{{"lbl", "L"}}}}});
    before->fromNickname = "nick";
    before->service = "";
    auto archive = before->archive();
    EXPECT_EQ(archive["fromnickname"], "nick");
    EXPECT_FALSE(archive.contains("callId"));
    const auto after = QuorrandChatMessage::createWithArchive(*chat, archive);
    EXPECT_EQ(after->fromNickname, std::nullopt);
    EXPECT_EQ(after->kb_preview, std::nullopt);
    EXPECT_FALSE(after->isValidMessage);
    EXPECT_FALSE(after->xmppMessage());
    EXPECT_TRUE(after->chatActionButtons.empty());
    archive.erase("fromnickname");
    EXPECT_EQ(after->archive(), archive);
    EXPECT_EQ(QuorrandChatMessage::createWithArchive(*chat, 5)->archive(), Json::object());

    before->clear();
    EXPECT_EQ(before->archive(), Json::object());
    EXPECT_EQ(before->kb_id, std::nullopt);
}

TEST_F(ChatMessageForms, DatesAreToldInTheDevicesZone) {
    fakes.clock->offset = 3600s;
    const auto transcript =
        QuorrandChatMessage::createWithTranscript(*chat, {{"sent", "2026-01-05 13:04:30.250"}});
    EXPECT_EQ(transcript->fullDateString(), "2026-01-05T13:04:30.250Z");
    EXPECT_EQ(transcript->dateString(), "1/5/26");
    EXPECT_EQ(transcript->timeString(), "1:04 PM");
    fakes.localizer->texts["M/d/yy"] = "dd.MM.yy";
    EXPECT_EQ(transcript->dateString(), "05.01.26");
    EXPECT_EQ(QuorrandChatMessage::create(*chat)->timeString(), std::nullopt);
}

TEST_F(ChatMessageForms, OwnDataMessageIsCompactJsonThatComesBackAsNoLine) {
    const auto body = QuorrandChatMessage::createJSONMessage("qd-bot://a b/\"\xC3\xA9", "me", "7");
    EXPECT_EQ(body, R"({"channel":"chat","context":{"source":"7"},"from":"me",)"
                    R"("message":"qd-bot://a b/\")"
                    "\xC3\xA9"
                    R"(","secret":"8d777f385d3dfec8815d20f7496026dc"})");
    EXPECT_FALSE(line({.body = body})->isValidMessage);
    EXPECT_EQ(QuorrandChatMessage::preprocessMessage(body), "qd-bot://a b/\"\xC3\xA9");
    EXPECT_EQ(QuorrandChatMessage::preprocessMessage("{"), "{");
    EXPECT_EQ(QuorrandChatMessage::preprocessMessage("[1]"), "[1]");
    EXPECT_EQ(QuorrandChatMessage::preprocessMessage(R"({"secret": "x"})"), std::nullopt);
    EXPECT_EQ(QuorrandChatMessage::MD5(std::string("data\0more", 9)),
              "8d777f385d3dfec8815d20f7496026dc");
}

}  // namespace
}  // namespace supportsdk::test
