#include <gdk-pixbuf/gdk-pixbuf.h>
#include <sys/resource.h>

#include "backends/image/PixbufImageCodec.h"

namespace supportsdk::test {
namespace {

using namespace std::string_literals;

/// A picture of 3 by 2 in `format`: red, green, blue over white, black, half-transparent red.
std::string encoded(const char* format, const char* option = nullptr, const char* value = nullptr) {
    const int channels = std::string_view(format) == "png" ? 4 : 3;
    const std::vector<guchar> source = {255, 0,   0,   255, 0, 255, 0, 255, 0,   0, 255, 255,
                                        255, 255, 255, 255, 0, 0,   0, 255, 255, 0, 0,   128};
    std::vector<guchar> pixels;
    for (std::size_t byte = 0; byte < source.size(); ++byte) {
        if (channels == 4 || byte % 4 != 3) pixels.push_back(source[byte]);
    }
    auto* picture = gdk_pixbuf_new_from_data(pixels.data(), GDK_COLORSPACE_RGB, channels == 4, 8, 3,
                                             2, 3 * channels, nullptr, nullptr);
    gchar* bytes = nullptr;
    gsize size = 0;
    gdk_pixbuf_save_to_buffer(picture, &bytes, &size, format, nullptr, option, value, nullptr);
    std::string result(bytes, size);
    g_free(bytes);
    g_object_unref(picture);
    return result;
}

ImagePtr decode(std::string_view text) {
    return PixbufImageCodec().decode(std::as_bytes(std::span(text)));
}

std::vector<int> pixel(const Image& image, std::size_t index) {
    const auto* first = &image.pixels.at(index * 4);
    return {first[0], first[1], first[2], first[3]};
}

/// A GIF of 1 by 1 on the screen of that size, with one frame that claims another size.
std::string gif(std::uint16_t screen, std::uint16_t frame) {
    const auto word = [](std::uint16_t value) {
        return std::string{static_cast<char>(value & 0xFF), static_cast<char>(value >> 8)};
    };
    return "GIF89a" + word(screen) + word(screen) + "\x80\0\0"s + "\xff\0\0\0\0\0"s + "," +
           word(0) + word(0) + word(frame) + word(frame) + "\0"s + "\x02\x02\x44\x01\0"s + ";";
}

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
    EXPECT_TRUE(decode(gif(1, 1)));
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

TEST(PixbufImageCodec, PicturesThatClaimTooManyPixelsAreRefusedBeforeTheyCostMemory) {
    const auto peak = [] {
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        return usage.ru_maxrss / 1024;
    };
    const auto claim = [](std::string picture, std::size_t offset, const std::string& size) {
        return picture.replace(offset, size.size(), size);
    };
    (void)decode(encoded("png"));
    const auto before = peak();

    auto jpeg = encoded("jpeg");
    const auto frame = jpeg.find("\xff\xc0");
    ASSERT_NE(frame, std::string::npos);
    EXPECT_FALSE(decode(claim(jpeg, frame + 5, "\xff\xdc\xff\xdc"s)));
    // The checksum of the PNG's header is checked too, but only behind the bound.
    EXPECT_FALSE(decode(claim(encoded("png"), 16, "\0\0\xff\xff\0\0\xff\xff"s)));
    EXPECT_FALSE(decode(claim(encoded("bmp"), 18, "\xff\xff\0\0\xff\xff\0\0"s)));
    EXPECT_FALSE(decode(gif(0xFFFF, 0xFFFF)));
    EXPECT_FALSE(decode(gif(0xFFFF, 1)));
    (void)decode(gif(1, 0xFFFF));

    EXPECT_LT(peak() - before, 100) << "MiB";
}

}  // namespace
}  // namespace supportsdk::test
