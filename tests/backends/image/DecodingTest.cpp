#include "tests/backends/image/Pictures.h"

namespace supportsdk::test {
namespace {

using namespace std::string_literals;

TEST(PixbufImageCodec, DecodesToRowsOfRedGreenBlueAlpha) {
    const auto image = decode(encoded("png"));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width, 3u);
    EXPECT_EQ(image->height, 2u);
    ASSERT_EQ(image->pixels.size(), 24u);
    EXPECT_THAT(pixel(*image, 0), testing::ElementsAre(255, 0, 0, 255));
    EXPECT_THAT(pixel(*image, 5), testing::ElementsAre(255, 0, 0, 128));

    const auto opaque = decode(encoded("bmp"));
    ASSERT_TRUE(opaque);
    EXPECT_THAT(pixel(*opaque, 2), testing::ElementsAre(0, 0, 255, 255));
    EXPECT_TRUE(decode(encoded("jpeg")));
    EXPECT_TRUE(decode(gif(1, 1, {{}})));
}

TEST(PixbufImageCodec, TurnsThePictureAsItAsks) {
    // An EXIF block behind the JPEG's first marker: one entry, orientation 6 (turn right).
    const auto exif =
        "\xff\xe1\0\x22"
        "Exif\0\0MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0\0\0\0\0"s;
    auto jpeg = encoded("jpeg", "quality", "100");
    jpeg.insert(2, exif);

    const auto image = decode(jpeg);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width, 2u);
    EXPECT_EQ(image->height, 3u);
}

TEST(PixbufImageCodec, CutAndBentPicturesAreNoCrash) {
    for (const char* format : {"png", "jpeg", "bmp"}) {
        const auto whole = encoded(format);
        for (std::size_t length = 0; length + 1 < whole.size(); length += 3)
            (void)decode(whole.substr(0, length));
        for (std::size_t offset = 8; offset < whole.size(); ++offset) {
            auto bent = whole;
            bent[offset] = static_cast<char>(~bent[offset]);
            (void)decode(bent);
        }
    }
    for (const char* format : {"png", "jpeg"}) {
        const auto whole = encoded(format);
        EXPECT_FALSE(decode(whole.substr(0, whole.size() - 3))) << format;
    }
    EXPECT_FALSE(decode(""));
    EXPECT_FALSE(decode("<svg xmlns='http://www.w3.org/2000/svg' width='1' height='1'/>"));
    EXPECT_FALSE(decode(encoded("tiff"))) << "a format that is not let in";
}

}  // namespace
}  // namespace supportsdk::test
