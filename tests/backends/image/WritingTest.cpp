#include <cmath>

#include "supportsdk/platform/ImageShapes.h"
#include "tests/backends/image/Pictures.h"

namespace supportsdk::test {
namespace {

PixbufImageCodec codec;

Image filled(std::uint32_t width, std::uint32_t height, std::vector<std::uint8_t> pixel) {
    Image image{width, height, std::vector<std::uint8_t>(std::size_t{width} * height * 4)};
    for (std::size_t byte = 0; byte < image.pixels.size(); ++byte)
        image.pixels[byte] = pixel[byte % 4];
    return image;
}

TEST(Writing, PngComesBackAsItWasAndJpegOnWhiteAsLargeAsItsQuality) {
    const auto glass = filled(8, 8, {255, 0, 0, 128});
    EXPECT_EQ(codec.decode(codec.encodePng(glass).value())->pixels, glass.pixels);
    const auto onWhite = codec.decode(codec.encodeJpeg(glass, 1).value());
    EXPECT_NEAR(pixel(*onWhite, 9)[0], 255, 3);
    EXPECT_NEAR(pixel(*onWhite, 9)[1], 127, 3);

    auto noise = filled(64, 64, {0, 0, 0, 255});
    for (std::size_t byte = 0; byte < noise.pixels.size(); ++byte)
        noise.pixels[byte] = static_cast<std::uint8_t>(byte * byte / 7);
    const auto size = [&](double quality) { return codec.encodeJpeg(noise, quality)->size(); };
    EXPECT_LT(size(0), size(0.5));
    EXPECT_LT(size(0.5), size(1));
    EXPECT_EQ(size(std::nan("")), size(0));
    EXPECT_EQ(size(7), size(1));
}

TEST(Writing, ScalesEvenlyAndWhatIsInvisibleColoursNothing) {
    auto stripes = filled(900, 600, {200, 9, 9, 255});
    for (std::size_t byte = 0; byte < stripes.pixels.size(); byte += 8) stripes.pixels[byte] = 100;
    const auto thumbnail = codec.scaled(stripes, 3, 2);
    ASSERT_EQ(thumbnail->pixels.size(), 24U);
    EXPECT_NEAR(pixel(*thumbnail, 4)[0], 150, 3);
    EXPECT_EQ(pixel(*codec.scaled({2, 1, {255, 0, 0, 255, 0, 0, 0, 0}}, 1, 1), 0)[0], 255);
}

TEST(Writing, MakesAnEvenCircleOfTheCentredSquare) {
    const auto round = roundImage(filled(40, 20, {200, 200, 200, 200}));
    ASSERT_EQ(round->pixels.size(), 20U * 20 * 4);
    double seen = 0;
    for (std::size_t each = 0; each < 400; ++each) {
        seen += pixel(*round, each)[3] / 200.0;
        EXPECT_EQ(pixel(*round, each)[3], pixel(*round, 399 - each)[3]);
    }
    EXPECT_NEAR(seen, 3.14159 * 10 * 10, 2) << "the edge covers as much as the circle does";
    EXPECT_EQ(pixel(*roundImage({3, 1, {1, 1, 1, 1, 7, 7, 7, 255, 1, 1, 1, 1}}), 0)[0], 7);
}

TEST(Writing, APictureThatIsNotWhatItSaysIsRefused) {
    const std::vector<Image> wrong = {
        {2, 2, {1, 2, 3}}, {0, 5, {}}, {0xFFFFFFFF, 0xFFFFFFFF, {1, 2, 3, 4}}, {0x80000000, 2, {}}};
    for (const auto& image : wrong) {
        EXPECT_FALSE(codec.encodePng(image));
        EXPECT_FALSE(codec.encodeJpeg(image, 0.5));
        EXPECT_FALSE(codec.scaled(image, 1, 1));
        EXPECT_FALSE(roundImage(image));
    }
    EXPECT_FALSE(codec.scaled({1, 1, {1, 2, 3, 4}}, 0xFFFFFFFF, 0xFFFFFFFF));
    EXPECT_FALSE(codec.encodeJpeg(filled(70'000, 1, {1, 2, 3, 4}), 0.5)) << "wider than a JPEG can";
}

}  // namespace
}  // namespace supportsdk::test
