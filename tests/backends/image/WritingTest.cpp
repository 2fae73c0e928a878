#include <cmath>

#include "tests/backends/image/Pictures.h"

namespace supportsdk::test {
namespace {

using testing::Each;
using testing::ElementsAre;

PixbufImageCodec codec;

Image filled(std::uint32_t width, std::uint32_t height, const std::vector<std::uint8_t>& pixel) {
    Image image{width, height, {}};
    for (std::size_t count = std::size_t{width} * height; count > 0; --count)
        image.pixels.insert(image.pixels.end(), pixel.begin(), pixel.end());
    return image;
}

Image noise(std::uint32_t side) {
    auto image = filled(side, side, {0, 0, 0, 255});
    for (std::size_t byte = 0; byte < image.pixels.size(); ++byte)
        if (byte % 4 != 3) image.pixels[byte] = static_cast<std::uint8_t>(byte * byte / 7);
    return image;
}

TEST(Writing, PngComesBackAsItWas) {
    auto image = noise(17);
    image.pixels[3] = 0;
    image.pixels[7] = 99;
    const auto back = codec.decode(codec.encodePng(image).value());
    ASSERT_TRUE(back);
    EXPECT_EQ(back->width, 17U);
    EXPECT_EQ(back->pixels, image.pixels);
}

TEST(Writing, JpegLiesOnWhiteAndIsAsLargeAsItsQuality) {
    const auto onWhite = codec.decode(codec.encodeJpeg(filled(8, 8, {255, 0, 0, 128}), 1).value());
    ASSERT_TRUE(onWhite);
    const auto color = pixel(*onWhite, 9);
    EXPECT_EQ(color[3], 255);
    EXPECT_NEAR(color[0], 255, 3);
    EXPECT_NEAR(color[1], 127, 3);
    EXPECT_NEAR(color[2], 127, 3);

    const auto size = [image = noise(64)](double quality) {
        return codec.encodeJpeg(image, quality).value_or(Bytes{}).size();
    };
    EXPECT_GT(size(0), 0U);
    EXPECT_LT(size(0), size(0.5));
    EXPECT_LT(size(0.5), size(1));
    EXPECT_EQ(size(-3), size(0));
    EXPECT_EQ(size(7), size(1));
    EXPECT_EQ(size(std::nan("")), size(0));
}

TEST(Writing, ScalesColoursEvenlyAndHowFarEver) {
    auto stripes = filled(900, 600, {200, 0, 0, 255});
    for (std::size_t byte = 0; byte < stripes.pixels.size(); byte += 8) stripes.pixels[byte] = 100;
    const auto thumbnail = codec.scaled(stripes, 3, 2);
    ASSERT_TRUE(thumbnail);
    ASSERT_EQ(thumbnail->pixels.size(), 24U);
    for (std::size_t each = 0; each < 6; ++each) EXPECT_NEAR(pixel(*thumbnail, each)[0], 150, 3);
    EXPECT_THAT(pixel(*codec.scaled(filled(1, 1, {1, 2, 3, 4}), 500, 9), 4499),
                ElementsAre(1, 2, 3, 4));
    EXPECT_EQ(codec.scaled(filled(40'000, 1, {1, 2, 3, 4}), 1, 1'000)->height, 1'000U);

    // What is invisible must not colour what is seen.
    auto half = filled(2, 1, {255, 0, 0, 255});
    std::fill_n(half.pixels.begin() + 4, 4, std::uint8_t{0});
    EXPECT_EQ(pixel(*codec.scaled(half, 1, 1), 0)[0], 255);
}

TEST(Writing, APictureThatIsNotWhatItSaysIsRefused) {
    const std::vector<Image> wrong = {{2, 2, {1, 2, 3}},
                                      {0, 5, {}},
                                      {0xFFFFFFFF, 0xFFFFFFFF, {1, 2, 3, 4}},
                                      {0x80000000, 2, {}},
                                      {1, 1, {1, 2, 3, 4, 5}}};
    for (const auto& image : wrong) {
        EXPECT_FALSE(codec.encodePng(image));
        EXPECT_FALSE(codec.encodeJpeg(image, 0.5));
        EXPECT_FALSE(codec.scaled(image, 1, 1));
    }
    const auto dot = filled(1, 1, {1, 2, 3, 4});
    EXPECT_FALSE(codec.scaled(dot, 0, 1));
    EXPECT_FALSE(codec.scaled(dot, 0xFFFFFFFF, 0xFFFFFFFF));
    EXPECT_FALSE(codec.encodeJpeg(filled(70'000, 1, {1, 2, 3, 4}), 0.5)) << "wider than a JPEG can";
}

}  // namespace
}  // namespace supportsdk::test
