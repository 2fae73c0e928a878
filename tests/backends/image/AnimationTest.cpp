#include "backends/image/GifLayout.h"
#include "tests/backends/image/Pictures.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;

std::optional<AnimatedImage> animate(std::string_view text) {
    return PixbufImageCodec().decodeAnimation(asBytes(text));
}

std::vector<std::int64_t> durations(const std::optional<AnimatedImage>& animation) {
    std::vector<std::int64_t> result;
    if (!animation) return result;
    for (const auto& frame : animation->frames) result.push_back(frame.duration.count());
    return result;
}

const std::vector<GifFrame> four = {{0, 1, 5, 0}, {1, 1, 1, 1}, {0, 1, 0, 1}, {1, 1, 2, 0}};

TEST(Animation, HasAllFramesOnceEachOnTopOfTheOthersWithItsTime) {
    const auto animation = animate(gif(2, 1, four));
    EXPECT_THAT(durations(animation), ElementsAre(50, 100, 100, 20));
    ASSERT_TRUE(animation);
    const auto& frames = animation->frames;
    for (const auto& frame : frames) EXPECT_EQ(frame.image->pixels.size(), 8U);
    const std::vector<int> red{255, 0, 0, 255};
    const std::vector<int> black{0, 0, 0, 255};
    EXPECT_EQ(pixel(*frames[0].image, 0), red);
    EXPECT_EQ(pixel(*frames[0].image, 1)[3], 0);
    EXPECT_EQ(pixel(*frames[1].image, 0), red);
    EXPECT_EQ(pixel(*frames[1].image, 1), black);
    EXPECT_EQ(pixel(*frames[3].image, 0), black);
    EXPECT_EQ(pixel(*frames[3].image, 1), red);
    EXPECT_EQ(decode(gif(2, 1, four))->pixels, frames[0].image->pixels);
}

TEST(Animation, OfAStillPictureIsThatPicture) {
    EXPECT_THAT(durations(animate(gif(1, 1, {{}}))), ElementsAre(0));
    EXPECT_THAT(durations(animate(encoded("png"))), ElementsAre(0));
    EXPECT_FALSE(animate("<html>"));
    EXPECT_FALSE(animate(gif(1, 1, {})));
}

TEST(Animation, CutAndBentOnesEndWithWhatIsWhole) {
    const auto whole = gif(2, 1, four);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const auto cut = animate(whole.substr(0, length));
        const auto layout = GifLayout::read(whole.substr(0, length), 10);
        EXPECT_EQ(cut ? cut->frames.size() : 0, layout ? layout->frames.size() : 0) << length;
    }
    EXPECT_THAT(durations(animate(whole.substr(0, whole.size() - 2))), ElementsAre(50, 100, 100));
    for (std::size_t offset = 6; offset < whole.size(); ++offset) {
        auto bent = whole;
        for (const char wrong : {'\0', '\x7f', '\xff'}) {
            bent[offset] = wrong;
            (void)animate(bent);
            (void)decode(bent);
        }
    }
}

TEST(Animation, WithTooManyFramesOrPixelsIsNoneButItsFirstFrameIsAPicture) {
    const std::vector<GifFrame> crowd(PixbufImageCodec::maximumFrames + 1, GifFrame{0, 1, 65535});
    EXPECT_FALSE(animate(gif(1, 1, crowd)));
    EXPECT_TRUE(animate(gif(1, 1, {crowd.begin() + 1, crowd.end()})));
    EXPECT_FALSE(animate(gif(1000, 400, {101, GifFrame{}})));
    EXPECT_TRUE(decode(gif(1000, 400, {101, GifFrame{}})));

    // Frames without an end: reading them all takes the loader the square of their number.
    auto endless = gif(1, 1, std::vector<GifFrame>(100'000));
    endless.pop_back();
    EXPECT_FALSE(animate(endless));
    EXPECT_TRUE(decode(endless));
}

}  // namespace
}  // namespace supportsdk::test
