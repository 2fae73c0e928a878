#include "supportsdk/platform/ImageShapes.h"
#include "tests/backends/image/Pictures.h"

namespace supportsdk::test {
namespace {

TEST(RoundImage, IsTheCentredCircle) {
    Image wide{40, 20, std::vector<std::uint8_t>(40 * 20 * 4, 200)};
    wide.pixels[(10 * 40 + 10) * 4] = 7;  // the first column of the square
    const auto round = roundImage(wide);
    ASSERT_TRUE(round);
    ASSERT_EQ(round->width, 20U);
    ASSERT_EQ(round->pixels.size(), 20U * 20 * 4);
    EXPECT_EQ(pixel(*round, 10 * 20)[0], 7);
    double seen = 0;
    for (std::size_t each = 0; each < 400; ++each) {
        seen += pixel(*round, each)[3] / 200.0;
        EXPECT_EQ(pixel(*round, each)[3], pixel(*round, 399 - each)[3]);
    }
    EXPECT_NEAR(seen, 3.14159 * 10 * 10, 2) << "an even edge covers as much as the circle does";
    EXPECT_EQ(pixel(*round, 0)[3], 0);
    EXPECT_EQ(pixel(*round, 10 * 20 + 10)[3], 200);
}

TEST(RoundImage, OfNothingOrOfTooFewPixelsIsNone) {
    EXPECT_FALSE(roundImage({}));
    EXPECT_FALSE(roundImage({5, 0, {}}));
    EXPECT_FALSE(roundImage({2, 2, {1, 2, 3}}));
    EXPECT_FALSE(roundImage({0xFFFFFFFF, 0xFFFFFFFF, {1, 2, 3, 4}}));
    EXPECT_TRUE(roundImage({1, 1, {1, 2, 3, 4}}));
}

}  // namespace
}  // namespace supportsdk::test
