#include "tests/backends/image/Pictures.h"

namespace supportsdk::test {
namespace {

TEST(Decoding, GivesRowsOfRedGreenBlueAlphaUpright) {
    for (const char* format : {"png", "bmp"}) {
        const auto image = decode(encoded(format));
        ASSERT_TRUE(image) << format;
        EXPECT_EQ(image->width, 3U);
        EXPECT_EQ(image->pixels.size(), 24U);
        EXPECT_THAT(pixel(*image, 2), testing::ElementsAre(0, 0, 255, 255));
        EXPECT_THAT(pixel(*image, 3), testing::ElementsAre(255, 255, 255, 255));
    }
    auto jpeg = encoded("jpeg");
    ASSERT_TRUE(decode(jpeg));
    EXPECT_EQ(decode(jpeg)->width, 3U);
    // An EXIF block behind the first marker: one entry, orientation 6 (turn right).
    jpeg.insert(2,
                "\xff\xe1\0\x22"
                "Exif\0\0MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0\0\0\0\0"s);
    EXPECT_EQ(decode(jpeg)->width, 2U);

    // A thumbnail in such a block has an end of its own, which is not the picture's.
    auto cut = encoded("jpeg");
    cut.insert(2, "\xff\xe1\0\x0a\xff\xd8\xff\xda\0\0\xff\xd9"s);
    EXPECT_TRUE(decode(cut));
    cut.resize(cut.size() - 2);
    EXPECT_FALSE(decode(cut));
}

TEST(Decoding, CutAndBentPicturesAreNoCrash) {
    for (const char* format : {"png", "jpeg", "bmp"}) {
        const auto whole = encoded(format);
        for (std::size_t offset = 0; offset < whole.size(); ++offset) {
            (void)decode(whole.substr(0, offset));
            auto bent = whole;
            bent[offset] = static_cast<char>(~bent[offset]);
            (void)decode(bent);
        }
        EXPECT_FALSE(decode(whole.substr(0, whole.size() - 3))) << format;
    }
    EXPECT_FALSE(decode("<svg xmlns='http://www.w3.org/2000/svg' width='1' height='1'/>"));
    EXPECT_FALSE(decode(encoded("tiff"))) << "a format that is not let in";
}

}  // namespace
}  // namespace supportsdk::test
