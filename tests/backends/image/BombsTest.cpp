#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

#include "backends/image/PictureFormat.h"
#include "tests/backends/image/Pictures.h"

namespace supportsdk::test {
namespace {

/// Of this process's address space, used or not.
long peakMegabytes() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line) && !line.starts_with("VmPeak:")) {
    }
    return std::stol(line.substr(7)) / 1024;
}

/// Decodes in a child, whose peak begins with what it has; 255 when there is a picture, when it
/// costs more, or takes too long.
int megabytesToRefuse(std::string_view bomb) {
    const pid_t child = fork();
    if (child == 0) {
        alarm(20);
        const auto before = peakMegabytes();
        if (decode(bomb) || PixbufImageCodec().decodeAnimation(asBytes(bomb))) _exit(255);
        _exit(static_cast<int>(std::min(peakMegabytes() - before, 255L)));
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 255;
}

std::string with(std::string picture, std::size_t offset, const std::string& bytes) {
    return picture.replace(offset, bytes.size(), bytes);
}

/// A progressive JPEG of 4096 by 4096 that goes over the picture `scans` times.
std::string jpegOf(std::size_t scans) {
    auto jpeg = encoded("jpeg");
    const auto frame = jpeg.find("\xff\xc0");
    jpeg = with(with(jpeg, frame, "\xff\xc2"s), frame + 5, "\x10\0\x10\0"s);
    const auto scan = jpeg.find("\xff\xda");
    const auto header = with(jpeg.substr(scan, 14), 12, "\0"s);  // just the first coefficient
    jpeg.erase(scan);
    for (std::size_t each = 0; each < scans; ++each) jpeg += header + "\0"s;
    return jpeg + "\xff\xd9";
}

TEST(Bombs, AreRefusedBeforeTheyCostMemory) {
    const auto jpeg = encoded("jpeg");
    // Of 60,000 by 60,000, one bit a pixel, with sums that are right.
    const auto png =
        "\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR\0\0\xea\x60\0\0\xea\x60\x01\0\0\0\0\xa8\xa9\x48\xef"
        "\0\0\0\x21IDAT\x78\xda\xed\xc1\x01\x0d\0\0\0\xc2\xa0\xf7\x4f\x6d\x0e\x37\xa0\0\0\0\0\0\0\0"
        "\0\0\0\xe0\xdf\0\x27\x10\0\x01\x28\xf2\x94\x42\0\0\0\0IEND\xae\x42\x60\x82"s;
    const std::map<std::string, std::string> bombs = {
        {"PNG", png},
        {"JPEG", with(jpeg, jpeg.find("\xff\xc0") + 5, "\xff\xdc\xff\xdc"s)},
        {"BMP", with(encoded("bmp"), 18, "\xff\xff\0\0\xff\xff\0\0"s)},
        {"BMP, negative", with(encoded("bmp"), 18, "\xff\xff\xff\xff\x01\0\0\x80"s)},
        {"GIF, screen", gif(0xFFFF, 0xFFFF, {{}})},
        {"GIF, frame", gif(1, 1, {{0, 0xFFFF}})},
    };
    for (const auto& [name, bomb] : bombs) EXPECT_LT(megabytesToRefuse(bomb), 60) << name;
    EXPECT_EQ(webpPixels("RIFF\0\0\0\0WEBPVP8X\x0a\0\0\0\0\0\0\0\x0f\x27\0\xff\xff\xff"s),
              10'000ULL << 24);
}

TEST(Bombs, OfManyScansAreRefusedBeforeTheyCostTime) {
    EXPECT_TRUE(decode(jpegOf(2)));
    EXPECT_FALSE(decode(jpegOf(2'000)));
}

}  // namespace
}  // namespace supportsdk::test
