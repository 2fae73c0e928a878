#include "backends/image/GifLayout.h"
#include "tests/backends/image/Pictures.h"

namespace supportsdk::test {
namespace {

std::vector<AnimatedImage::Frame> framesOf(std::string_view text) {
    const auto animation = PixbufImageCodec().decodeAnimation(asBytes(text));
    return animation ? animation->frames : std::vector<AnimatedImage::Frame>{};
}

const auto four = gif(2, 1, {{0, 1, 5, 0}, {1, 1, 1, 1}, {0, 1, 0, 1}, {1, 1, 2, 0}});

TEST(Animation, HasAllFramesOnceEachOnTopOfTheOthersWithItsTime) {
    const std::vector<int> nothing{0, 0, 0, 0}, red{255, 0, 0, 255}, black{0, 0, 0, 255};
    const std::vector<std::tuple<int, std::vector<int>, std::vector<int>>> expected = {
        {50, red, nothing}, {100, red, black}, {100, black, black}, {20, black, red}};
    const auto frames = framesOf(four);
    ASSERT_EQ(frames.size(), expected.size());
    for (std::size_t each = 0; each < frames.size(); ++each) {
        const auto& [image, duration] = frames[each];
        EXPECT_EQ(std::tuple(duration.count(), pixel(*image, 0), pixel(*image, 1)), expected[each]);
    }
    EXPECT_EQ(decode(four)->pixels, frames[0].image->pixels);
    EXPECT_EQ(framesOf(encoded("png")).size(), 1U);
    EXPECT_EQ(framesOf("<html>").size(), 0U);
}

TEST(Animation, CutAndBentOnesEndWithTheLastSoundFrame) {
    for (std::size_t offset = 0; offset < four.size(); ++offset) {
        const auto cut = four.substr(0, offset);
        const auto layout = GifLayout::read(cut, 10);
        EXPECT_EQ(framesOf(cut).size(), layout ? layout->frames.size() : 0) << offset;
        for (const char wrong : {'\0', '\x7f', '\xff'}) {
            auto bent = four;
            bent[offset] = wrong;
            (void)framesOf(bent);
            (void)decode(bent);
        }
    }
    EXPECT_EQ(framesOf(four.substr(0, four.size() - 2)).size(), 3U);
    EXPECT_EQ(framesOf(gif(1, 1, {{}, {1}})).size(), 1U) << "out of the screen";
}

TEST(Animation, WithTooManyFramesOrPixelsIsNoneButItsFirstFrameIsAPicture) {
    // Frames without an end: reading them all takes the loader the square of their number.
    auto endless = gif(1, 1, std::vector<GifFrame>(100'000));
    endless.pop_back();
    for (const auto& bomb : {endless, gif(1000, 400, {101, GifFrame{}})}) {
        EXPECT_EQ(framesOf(bomb).size(), 0U);
        EXPECT_TRUE(decode(bomb));
    }
    EXPECT_EQ(framesOf(gif(1, 1, {1'000, GifFrame{0, 1, 65535}})).size(), 1'000U);
}

}  // namespace
}  // namespace supportsdk::test
