#include "tests/chat/engine/EngineFixture.h"

namespace supportsdk::test {
namespace {

struct EngineResources : testing::Test {
    void setEmoticons(const std::string& json) {
        fake.kitBundle->files["Emoticons.json"] = json;
        chat->loadEmoticons();
    }

    FakePlatform fake;
    std::shared_ptr<QuorrandChat> chat = QuorrandChat::create(fake.platform);
};

TEST_F(EngineResources, mapEveryTextFormToItsPicture) {
    setEmoticons(R"json({"Emoticons": {"smile.png": {"Equivalents": ["(Smile)", ":)"]},
                                       "beer.gif": {"Equivalents": ["(beer)"]}}})json");
    fake.kitBundle->files["smile.png"] = "picture";
    EXPECT_EQ(chat->emoticonKeys, (std::vector<std::string>{"(beer)", "(Smile)", ":)"}));
    EXPECT_EQ(chat->emoticonsByName.at(":)"), "smile.png");
    EXPECT_TRUE(chat->imageForEmoticon("smile.png"));
    EXPECT_FALSE(chat->imageForEmoticon("beer.gif"));
    EXPECT_EQ(chat->htmlStringWithEmoticonsFromChatMessage("a (Smile)(Smile) :)"),
              "<html><body>a <img src=\"file:///bundle/smile.png\"><img "
              "src=\"file:///bundle/smile.png\"> :)</body></html>");
    EXPECT_EQ(chat->htmlStringWithEmoticonsFromChatMessage("plain :)"), std::nullopt);
}

TEST_F(EngineResources, mayBeMissingOrBroken) {
    EXPECT_EQ(chat->emoticonPredictors, std::set<std::string>{"("});
    EXPECT_FALSE(chat->appearance.localChatBubbleImage.image);
    for (const auto* json : {"[]", "{", R"({"Emoticons": 1})", R"({"Emoticons": {"a": 1}})",
                             R"({"Emoticons": {"a": {"Equivalents": [1, null, ""]}}})"}) {
        setEmoticons(json);
        EXPECT_TRUE(chat->emoticonsByName.empty()) << json;
    }
    fake.kitBundle->files["send.png"] = "bad";
    chat->setDefaults();
    EXPECT_FALSE(chat->appearance.chatSendButtonImage);
    EXPECT_FALSE(chat->imageForResource(""));
    EXPECT_EQ(chat->URLForResource("a", "png"), std::nullopt);
}

TEST_F(EngineResources, sharedEngineLivesWithItsHolders) {
    auto first = QuorrandChat::sharedInstance(fake.platform);
    EXPECT_EQ(QuorrandChat::sharedInstance(fake.platform), first);
    const std::weak_ptr<QuorrandChat> watched = first;
    first.reset();
    EXPECT_TRUE(watched.expired());
    EXPECT_TRUE(QuorrandChat::sharedInstance(fake.platform));
}

}  // namespace
}  // namespace supportsdk::test
