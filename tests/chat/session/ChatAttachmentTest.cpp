#include "supportsdk/chat/ChatPhotos.h"
#include "tests/chat/session/ChatSessionFixture.h"

namespace supportsdk::test {
namespace {

using testing::IsEmpty;

class ChatAttachment : public ChatSession {
 public:
    static PhotoItem photo(std::uint32_t width, std::uint32_t height) {
        const std::size_t bytes = std::size_t{4} * width * height;
        return {std::make_shared<Image>(Image{width, height, std::vector<std::uint8_t>(bytes)}),
                {}};
    }
    static PhotoItem file(const std::optional<std::string>& content) {
        return {nullptr, [content]() -> std::optional<Bytes> {
                    if (!content) return std::nullopt;
                    return toBytes(*content);
                }};
    }
    void choose(std::vector<PhotoItem> items) {
        screen->attach();
        fakes.photoChooser->answer(std::move(items));
        fakes.queue->drain();
    }
    void answerPut(const Json& body, int status = 200) {
        answer("/chat/filePut/c1", body, status);
        fakes.queue->drain();
    }
};

TEST_F(ChatAttachment, OpensOnlyInTheRoom) {
    open();
    screen->attach();
    EXPECT_EQ(fakes.presenter->alerts.back().message,
              "You have not yet joined the chat room. You may want to try again in a moment.");
    EXPECT_EQ(fakes.photoChooser->openings, 0);

    answerChatGet();
    join();
    receive("send us a picture");
    screen->handleButtonAction("qd-connect://classify-request", "label", screen->lastMessage());
    EXPECT_EQ(fakes.photoChooser->openings, 1);
    EXPECT_TRUE(fakes.photoChooser->options.hideClassificationOverlay);
    const auto shown = fakes.progress->shown;
    fakes.photoChooser->answer({});
    fakes.queue->drain();
    EXPECT_EQ(fakes.progress->shown, shown) << "nothing was chosen";
    EXPECT_EQ(requests("/chat/filePut"), 0);
}

TEST_F(ChatAttachment, PicturesGoOneAfterTheOtherAndDamagedOnesAreTold) {
    openAndJoin();
    stream().sent.clear();
    choose({file("bad"), file("first"), file(std::nullopt), photo(1, 1), PhotoItem()});
    EXPECT_THAT(fakes.progress->shown, testing::Contains("status Uploading..."));
    EXPECT_EQ(fakes.progress->shown.back(), "dismiss");
    EXPECT_EQ(fakes.presenter->alerts.back().title, "Unable to upload attachment");
    EXPECT_EQ(fakes.presenter->alerts.back().message, "The picture cannot be read.");
    EXPECT_EQ(requests("/chat/filePut/c1"), 1) << "the second waits for the first";
    const auto body = toText(fakes.http->sent.back().request.body);
    EXPECT_THAT(body, testing::HasSubstr("attachment"));
    EXPECT_THAT(body, testing::HasSubstr("jpeg"));

    const Json line = {{"secret", "s"}, {"attachment", {{"url", "u"}}}};
    answerPut({{"results", {line, "ignored"}}});
    EXPECT_EQ(Stanza::parse(stream().sent.back())->childText("body"), line.dump());
    EXPECT_THAT(lines(), IsEmpty()) << "the room reflects it";
    EXPECT_TRUE(screen->entryView->isSendEnabled());

    EXPECT_EQ(requests("/chat/filePut/c1"), 2);
    answerPut(Json::object(), 413);
    ASSERT_EQ(fakes.presenter->alerts.size(), 4U) << "all but the first one sent";
    EXPECT_THAT(fakes.presenter->alerts[2].message, testing::HasSubstr("413"));
}

TEST_F(ChatAttachment, LargePicturesAreScaledDown) {
    const std::vector<std::array<std::uint32_t, 4>> cases = {
        {2048, 2048, 2048, 2048}, {4096, 1024, 2048, 512}, {3, 2049, 3, 2048}, {1, 9000, 1, 2048}};
    for (const auto& [width, height, scaledWidth, scaledHeight] : cases) {
        const auto scaled =
            scaleAndRotateImage(*fakes.platform->images, photo(width, height).image);
        EXPECT_EQ(scaled->width, scaledWidth) << width << "x" << height;
        EXPECT_EQ(scaled->height, scaledHeight) << width << "x" << height;
    }
}

TEST_F(ChatAttachment, WhoLeavesMeanwhileIsLeftAlone) {
    openAndJoin();
    choose({photo(1, 1), photo(1, 1)});
    screen->exitIssue();
    answerPut({{"results", {Json::object()}}});
    EXPECT_EQ(requests("/chat/filePut"), 1) << "the chat has ended";
    EXPECT_THAT(fakes.progress->shown.back(), testing::Not(testing::StartsWith("error")));

    openAndJoin();
    screen->attach();
    screen.reset();
    fakes.photoChooser->answer({photo(1, 1)});
}

TEST_F(ChatAttachment, WhoGoesBackFindsThePicturesInTheirRoomAndInNoOther) {
    openAndJoin();
    choose({photo(1, 1), photo(1, 1), photo(1, 1), photo(1, 1)});
    disappear();
    screen.reset();
    const auto arrive = [this](const std::string& line) {
        answerPut({{"results", {{{"url", line}}}}});
        return wasSent(line);
    };
    EXPECT_TRUE(arrive("first"));
    open();
    EXPECT_TRUE(arrive("second"));
    disappear();
    open(openIssue("c2"));
    answer("/chat/get/c2", {{"external_id", "room@rooms.test"}});
    enterRoom();
    EXPECT_FALSE(arrive("third"));
    EXPECT_EQ(fakes.progress->shown.back(),
              "error You are not connected. Your message has not been sent.");
    EXPECT_EQ(requests("/chat/filePut"), 3);

    const std::weak_ptr<Support> kit = support;
    screen.reset();
    open();
    answerChatGet();
    enterRoom();
    choose({photo(1, 1)});
    EXPECT_EQ(requests("/chat/filePut"), 4);
    screen.reset();
    support.reset();
    EXPECT_TRUE(kit.expired()) << "an upload keeps nobody";
}

}  // namespace
}  // namespace supportsdk::test
