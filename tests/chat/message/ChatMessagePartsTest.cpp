#include <random>
#include <regex>

#include "supportsdk/chat/ChatPictures.h"
#include "supportsdk/chat/QDChatActionButton.h"
#include "supportsdk/chat/QDChatButtonCollectionView.h"
#include "tests/chat/ChatFixture.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;

/// A codec whose pictures are as wide as the data's first byte says, of one colour.
class SizedImageCodec : public FakeImageCodec {
 public:
    ImagePtr decode(std::span<const std::byte> data) override {
        ++decodes;
        if (data.empty() || toText(data).starts_with("bad")) return nullptr;
        const auto side = std::to_integer<std::uint32_t>(data.front());
        return scaled({}, side, side);
    }
    std::optional<AnimatedImage> decodeAnimation(std::span<const std::byte> data) override {
        AnimatedImage animation;
        for (std::size_t frame = 0; frame < data.size(); ++frame)
            animation.frames.push_back({decode(data.subspan(frame)), {}});
        return animation;
    }
    int decodes = 0;
};

class ChatMessageParts : public ChatFixture, public testing::Test {
 public:
    ChatMessageParts() {
        fakes.platform->images = codec;
        fakes.kitBundle->files = {{"user-placeholder-round.png", "\x09"},
                                  {"image-not-available.jpg", "\x08"},
                                  {"smile.png", "\x07"},
                                  {"wave.gif", "\x01\x02\x03\x04"},
                                  {"Emoticons.json", R"json({"Emoticons": {
            "smile.png": {"Equivalents": ["(smile)", "(a b)", "(Upper)", "(:))", "()"]},
            "wave.gif": {"Equivalents": ["(wave)", "(été_1)"]},
            "lost.png": {"Equivalents": ["(lost)"]}}})json"}};
        chat->loadEmoticons();
        chat->avatarRetrievalAPIBaseURL = "https://api.example.test";
    }
    /// `text` with what became a picture in angle brackets.
    [[nodiscard]] std::string styled(const std::string& text) const {
        std::string shown;
        for (const auto& piece : attributedStringFromChatMessage(*chat, text).pieces) {
            const auto* picture = std::get_if<AnimatedTextAttachment>(&piece);
            shown += picture ? "<" + picture->text + ">" : std::get<std::string>(piece);
        }
        return shown;
    }
    void answer(std::size_t request, int status, const std::string& data) const {
        HttpResponse response;
        response.status = status;
        response.body = toBytes(data);
        fakes.http->answerRaw(request, std::move(response));
        fakes.queue->drain();
    }
    [[nodiscard]] std::vector<std::string> asked() const {
        std::vector<std::string> addresses;
        for (const auto& sent : fakes.http->sent) addresses.push_back(sent.request.url);
        return addresses;
    }

    std::shared_ptr<SizedImageCodec> codec = std::make_shared<SizedImageCodec>();
};

TEST_F(ChatMessageParts, KnownWordsInBracketsBecomePictures) {
    for (const auto& [text, shown] : std::map<std::string, std::string>{
             {"(ÉTÉ_1)(été 1)", "<(ÉTÉ_1)>(été 1)"},
             // Neither words, nor in lower case, nor a picture there.
             {"(a b) (:)) () (upper) (lost)", "(a b) (:)) () (upper) (lost)"},
             {"(smile\xFF)", "(smile\xFF)"}}) {
        EXPECT_EQ(styled(text), shown);
        EXPECT_EQ(attributedStringFromChatMessage(*chat, text).plainText(), text);
    }
    const auto wave = attributedStringFromChatMessage(*chat, "(wave)");
    const auto& picture = std::get<AnimatedTextAttachment>(wave.pieces.at(0));
    EXPECT_EQ(picture.animation->frames.size(), 4);
    EXPECT_EQ(picture.image, picture.animation->frames[2].image);
    EXPECT_EQ(styled(std::string(200'000, '(')).size(), 200'000);
}

TEST_F(ChatMessageParts, RandomTextsAreReadAsTheRegularExpressionReadsThem) {
    const std::regex word(R"(\([\w]+\))");
    const std::array<std::string, 7> parts{"(", ")", "smile", "Wave", " ", "_", "(smile)"};
    std::mt19937 random(4);
    for (int round = 0; round < 2000; ++round) {
        std::string text;
        for (auto part = random() % 12; part > 0; --part) text += parts[random() % 7];
        std::string expected;
        auto rest = text.cbegin();
        for (std::sregex_iterator match(text.begin(), text.end(), word), end; match != end;
             ++match) {
            auto lower = match->str();
            for (auto& letter : lower) letter = static_cast<char>(std::tolower(letter));
            const bool isKnown = lower == "(smile)" || lower == "(wave)";
            expected += std::string(rest, (*match)[0].first) +
                        (isKnown ? "<" + match->str() + ">" : match->str());
            rest = (*match)[0].second;
        }
        ASSERT_EQ(styled(text), expected + std::string(rest, text.cend())) << text;
    }
}

TEST_F(ChatMessageParts, StyledTextKeepsTheColourOfItsCompletion) {
    chat->me = "users:7";
    chat->appearance.localTextColor = colorFromRGB(0x112233);
    const auto mine =
        envelope("plain", {{"message", " (smile) "}, {"attachment", {{"url", "http://x/y"}}}});
    chat->appearance.localTextColor = colorFromRGB(0);
    EXPECT_EQ(mine->message(), "(smile)");
    // An attachment shows its text like any other line.
    EXPECT_EQ(mine->attributedString().pieces.size(), 1);
    EXPECT_EQ(mine->attributedString().color, colorFromRGB(0x112233));
    mine->text = "other";
    EXPECT_EQ(mine->message(), "(smile)");
    EXPECT_EQ(
        QuorrandChatMessage::createBasicWithXMPPMessage(*chat, LineXml{"x"}.stanza())->message(),
        std::nullopt);

    const auto late = line({.body = "late (smile)"});
    chat.reset();
    EXPECT_EQ(late->attributedString().plainText(), "late (smile)");
}

TEST_F(ChatMessageParts, AvatarsAreAskedForBySender) {
    for (const auto* from :
         {"users:7;tab", "Relay", "a:b:c", "nobody", "x/..:4?5", "..:sessions", "users:."})
        (void)line({.body = "hi", .from = std::string("room@x/") + from});
    EXPECT_THAT(asked(), ElementsAre("https://api.example.test/api/v1/avatar/users/7/50,50",
                                     "https://api.example.test/api/v1/avatar/relay/id/50,50",
                                     "https://api.example.test/api/v1/avatar/x%2F../4%3F5/50,50"));
    for (const auto& sent : fakes.http->sent) EXPECT_TRUE(sent.request.headers.empty());
}

TEST_F(ChatMessageParts, LinesShareAPictureAndItsOneLoad) {
    const auto first = line({.body = "1"});
    const auto second = line({.body = "2"});
    ASSERT_EQ(fakes.http->sent.size(), 1);
    EXPECT_EQ(first->avatarImage->width, 9);
    EXPECT_EQ(codec->decodes, 1) << "the placeholder, once";
    answer(0, 200, "\xFA");
    EXPECT_EQ(first->avatarImage->width, 100) << "large pictures are not kept as they are";
    EXPECT_EQ(first->avatarImage, second->avatarImage);
    EXPECT_EQ(chat->avatars.begin()->second, first->avatarImage);

    // The same sender's next line loads again, and an equal picture is no new one.
    const auto third = line({.body = "3"});
    EXPECT_EQ(third->avatarImage->width, 9);
    answer(1, 200, "\xFA");
    EXPECT_EQ(third->avatarImage, first->avatarImage);
    const auto fourth = line({.body = "4"});
    answer(2, 404, "\x05");
    EXPECT_EQ(fourth->avatarImage->width, 9);
    // What is kept is found under the sender, if somebody puts it there.
    chat->avatars["nobody"] = first->avatarImage;
    EXPECT_EQ(line({.body = "5", .from = "r@x/nobody"})->avatarImage, first->avatarImage);
}

TEST_F(ChatMessageParts, PreviewsAreSmallAndAvatarsOfTranscriptsAreAnywhere) {
    const auto picture = envelope("attachment", {{"attachment", {{"preview", "http://x/p"}}}});
    EXPECT_EQ(picture->previewImage->width, 8);
    EXPECT_TRUE(picture->hasPreview());
    EXPECT_FALSE(picture->attachmentView) << "there is nothing to open";
    answer(0, 200, "\xFF");
    EXPECT_EQ(picture->previewImage->width, 100);

    const auto transcript = QuorrandChatMessage::createWithTranscript(
        *chat, {{"message", "hi"}, {"from_avatar", "http://x/a"}});
    EXPECT_EQ(asked().back(), "http://x/a");
    answer(2, 200, "bad");
    EXPECT_EQ(transcript->avatarImage->width, 9);
    EXPECT_TRUE(transcript->messageView);
    EXPECT_EQ(QuorrandChatMessage::createWithTranscript(*chat, {})->avatarImage->width, 9);
}

TEST_F(ChatMessageParts, SilentPreviewsHoldUpNoAvatarAndBothAreBounded) {
    const auto preview = [this](std::size_t number) -> std::weak_ptr<QuorrandChatMessage> {
        const Json body{{"secret", QuorrandChatMessage::MD5("attachment")},
                        {"attachment", {{"preview", "http://x/" + std::to_string(number)}}}};
        return line({.body = body.dump(), .from = "room@x/nobody"});
    };
    for (std::size_t waiting = 1; waiting < ChatPictures::maximumWaitingPreviews; ++waiting)
        (void)preview(waiting);
    EXPECT_FALSE(preview(0).expired());
    EXPECT_TRUE(preview(999).expired()) << "nothing is loaded for it";
    EXPECT_FALSE(preview(0).expired()) << "that address waits already";
    (void)line({.body = "hi"});
    EXPECT_EQ(asked().back(), "https://api.example.test/api/v1/avatar/users/7/50,50");

    const auto avatar = [this](std::size_t number) -> std::weak_ptr<QuorrandChatMessage> {
        const auto address = "http://a/" + std::to_string(number);
        return QuorrandChatMessage::createWithTranscript(*chat, {{"from_avatar", address}});
    };
    for (std::size_t waiting = 1; waiting < ChatPictures::maximumWaitingAvatars; ++waiting)
        EXPECT_FALSE(avatar(waiting).expired());
    EXPECT_TRUE(avatar(999).expired());
    fakes.settle();
}

TEST_F(ChatMessageParts, PicturesThatCannotComeHoldNoLineAndNoEngine) {
    const std::weak_ptr<QuorrandChatMessage> loading = line({.body = "hi"});
    EXPECT_FALSE(loading.expired());
    answer(0, 500, "");
    EXPECT_TRUE(loading.expired());

    const std::weak_ptr<QuorrandChatMessage> abandoned = line({.body = "hi"});
    const std::weak_ptr<QuorrandChat> engine = chat;
    HttpResponse response;
    response.status = 200;
    response.body = toBytes("\x05");
    fakes.http->answerRaw(1, std::move(response));
    chat.reset();
    EXPECT_TRUE(engine.expired());
    EXPECT_TRUE(abandoned.expired());
    fakes.queue->drain();
}

TEST_F(ChatMessageParts, ButtonsAreACollectionAndBounded) {
    Json actions = Json::array();
    for (int i = 0; i < 5000; ++i) actions.push_back({{"lbl", "B"}});
    const auto bounded = envelope("plain", {{"actions", actions}});
    EXPECT_EQ(bounded->chatActionButtons.size(), QuorrandChatMessage::maximumActions);
    EXPECT_EQ(bounded->chatButtonCollectionView->buttons, bounded->chatActionButtons);
    EXPECT_TRUE(bounded->chatButtonCollectionView->isObserving());
    auto stored = bounded->dict();
    stored["buttonActions"].push_back({{"lbl", "one more"}});
    EXPECT_EQ(QuorrandChatMessage::createWithDict(*chat, stored)->chatActionButtons.size(),
              QuorrandChatMessage::maximumActions);
    for (auto& action : actions) action["perms"] = "nobody";
    actions.push_back({{"lbl", "B"}});
    EXPECT_TRUE(envelope("plain", {{"actions", actions}})->chatActionButtons.empty());
    EXPECT_EQ(envelope("plain", {{"actions", Json::array()}})->chatButtonCollectionView, nullptr);
}

}  // namespace
}  // namespace supportsdk::test
