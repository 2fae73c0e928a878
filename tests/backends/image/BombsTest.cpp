#include <sys/wait.h>
#include <unistd.h>
#include <zlib.h>

#include <fstream>

#include "backends/image/PictureFormat.h"
#include "tests/backends/image/Pictures.h"

namespace supportsdk::test {
namespace {

using namespace std::string_literals;

long peakMegabytes() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmPeak:")) return std::stol(line.substr(7)) / 1024;
    }
    return 0;
}

/// By how many MiB `work` raises the address space at most, used or not; in a child, whose peak
/// begins with what it has. 255 when it raises it by more, dies or takes too long.
int megabytesFor(const std::function<void()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        alarm(20);
        const auto before = peakMegabytes();
        work();
        _exit(static_cast<int>(std::min(peakMegabytes() - before, 255L)));
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 255;
}

std::string bigEndian(std::uint32_t value) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) text += static_cast<char>(value >> shift);
    return text;
}

std::string pngChunk(const std::string& type, const std::string& data) {
    const auto text = type + data;
    const auto sum = crc32(0, reinterpret_cast<const Bytef*>(text.data()), uInt(text.size()));
    return bigEndian(std::uint32_t(data.size())) + text + bigEndian(std::uint32_t(sum));
}

/// Black, a bit a pixel; the data ends early.
std::string pngOf(std::uint32_t side) {
    const std::string zeros(1'000'000, '\0');
    uLongf size = compressBound(zeros.size());
    std::string packed(size, '\0');
    compress(reinterpret_cast<Bytef*>(packed.data()), &size,
             reinterpret_cast<const Bytef*>(zeros.data()), zeros.size());
    packed.resize(size);
    return "\x89PNG\r\n\x1a\n"s +
           pngChunk("IHDR", bigEndian(side) + bigEndian(side) + "\x01\0\0\0\0"s) +
           pngChunk("IDAT", packed) + pngChunk("IEND", "");
}

std::string with(std::string picture, std::size_t offset, const std::string& bytes) {
    return picture.replace(offset, bytes.size(), bytes);
}

/// A progressive JPEG of 4096 by 4096 that goes over the picture `scans` times.
std::string jpegOf(std::size_t scans) {
    auto jpeg = encoded("jpeg");
    const auto frame = jpeg.find("\xff\xc0");
    jpeg = with(jpeg, frame, "\xff\xc2"s);
    jpeg = with(jpeg, frame + 5, "\x10\0\x10\0"s);
    const auto scan = jpeg.find("\xff\xda");
    const auto header = with(jpeg.substr(scan, 14), 12, "\0"s);  // just the first coefficient
    jpeg.erase(scan);
    for (std::size_t each = 0; each < scans; ++each) jpeg += header + "\0"s;
    return jpeg + "\xff\xd9";
}

TEST(Bombs, AreRefusedBeforeTheyCostMemory) {
    const auto jpeg = encoded("jpeg");
    const std::map<std::string, std::string> bombs = {
        {"PNG", pngOf(60'000)},
        {"JPEG", with(jpeg, jpeg.find("\xff\xc0") + 5, "\xff\xdc\xff\xdc"s)},
        {"BMP", with(encoded("bmp"), 18, "\xff\xff\0\0\xff\xff\0\0"s)},
        {"BMP, negative", with(encoded("bmp"), 18, "\xff\xff\xff\xff\x01\0\0\x80"s)},
        {"GIF, screen", gif(0xFFFF, 0xFFFF, {{}})},
        {"GIF, line", gif(0xFFFF, 1, {{0, 0xFFFF}})},
        {"GIF, frame", gif(1, 1, {{0, 0xFFFF}})},
        {"GIF, later frame", gif(1, 1, {{}, {0, 0xFFFF}})},
    };
    for (const auto& [name, bomb] : bombs) {
        const auto grown = megabytesFor([&bomb = bomb, isSound = name == "GIF, later frame"] {
            if (bool(decode(bomb)) != isSound) _exit(255);
            if (bool(PixbufImageCodec().decodeAnimation(asBytes(bomb))) != isSound) _exit(255);
        });
        EXPECT_LT(grown, 60) << name;
    }
    EXPECT_TRUE(decode(pngOf(1'000))) << "the same with a size that is allowed";
}

TEST(Bombs, OfManyScansAreRefusedBeforeTheyCostTime) {
    EXPECT_TRUE(decode(jpegOf(2)));
    EXPECT_FALSE(decode(jpegOf(2'000)));
}

TEST(Bombs, TellTheirSizeInAWebPHeader) {
    const auto file = [](const std::string& chunk) { return "RIFF\0\0\0\0WEBP"s + chunk; };
    EXPECT_EQ(webpPixels(file("VP8X\x0a\0\0\0\0\0\0\0\x0f\x27\0\xff\xff\xff"s)), 10'000ULL << 24);
    EXPECT_EQ(webpPixels(file("VP8 \0\0\0\0\0\0\0\x9d\x01\x2a\x10\x40\x03\xc0"s)), 48U);
    EXPECT_EQ(webpPixels(file("VP8L\0\0\0\0\x2f\xff\xff\xff\x0f"s)), 1U << 28);
    EXPECT_EQ(webpPixels(file("VP8 "s)), 0U);
}

}  // namespace
}  // namespace supportsdk::test
