#include <gmock/gmock.h>
#include <zlib.h>

#include <cmath>
#include <limits>
#include <random>

#include "supportsdk/proactive/DCTar.h"
#include "supportsdk/proactive/GzipData.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/TemporaryFolder.h"

using namespace supportsdk;
using namespace supportsdk::test;
namespace fs = std::filesystem;

namespace {

constexpr std::size_t chunk = 16384;

std::string noise(std::size_t length) {
    std::minstd_rand random(7);
    std::string text(length, '\0');
    for (auto& byte : text) byte = static_cast<char>(random() >> 8);
    return text;
}

/// zlib alone, with room for a chunk at a time: of the text as a whole, or in chunks and an end.
std::string plainDeflate(std::string text, int level, int bits, bool inChunks = false) {
    z_stream stream{};
    EXPECT_EQ(deflateInit2(&stream, level, Z_DEFLATED, bits, 8, Z_DEFAULT_STRATEGY), Z_OK);
    std::string out;
    const auto feed = [&](std::size_t at, std::size_t count, int flush) {
        stream.next_in = reinterpret_cast<Bytef*>(text.data()) + at;
        stream.avail_in = static_cast<uInt>(count);
        do {
            std::array<Bytef, chunk> room{};
            stream.next_out = room.data();
            stream.avail_out = chunk;
            deflate(&stream, flush);
            out.append(room.begin(), room.end() - stream.avail_out);
        } while (stream.avail_out == 0);
    };
    for (std::size_t at = 0; inChunks && at < text.size(); at += chunk) {
        feed(at, std::min(chunk, text.size() - at), Z_NO_FLUSH);
    }
    feed(inChunks ? text.size() : 0, inChunks ? 0 : text.size(), Z_FINISH);
    deflateEnd(&stream);
    return out;
}

std::string gzipOf(const std::string& text) {
    return toText(gzippedData(toBytes(text)).value());
}

}  // namespace

class GzipTest : public testing::Test {
 protected:
    bool deflateFile(const std::string& from, const std::string& to, bool isGzip = true) const {
        const auto source = FileHandle::forReadingAtPath(folder.path / from);
        return source && DCTar::fileDeflate(*source, isGzip, folder.path / to);
    }
    bool inflateFile(const std::string& from, const std::string& to, bool isGzip = true) const {
        const auto source = FileHandle::forReadingAtPath(folder.path / from);
        return source && DCTar::fileInflate(*source, isGzip, folder.path / to);
    }

    TemporaryFolder folder;
};

TEST_F(GzipTest, WritesWhatZlibWritesAndReadsItBack) {
    std::vector<std::string> texts{"x", std::string(1 << 20, 'x'), noise(1 << 20)};
    for (const auto size : {chunk - 1, chunk, chunk + 1}) texts.push_back(noise(size));
    for (const auto& text : texts) {
        const auto data = toBytes(text);
        folder.write("plain", text);
        for (const bool isGzip : {true, false}) {
            SCOPED_TRACE(testing::Message() << text.size() << " bytes, gzip " << isGzip);
            const auto packed = DCTar::deflate(data, isGzip);
            ASSERT_TRUE(packed);
            EXPECT_EQ(toText(*packed), plainDeflate(text, -1, isGzip ? 31 : 15));
            EXPECT_EQ(DCTar::inflate(*packed, isGzip), data);
            ASSERT_TRUE(deflateFile("plain", "packed", isGzip));
            EXPECT_EQ(folder.read("packed"), plainDeflate(text, -1, isGzip ? 31 : 15, true));
            ASSERT_TRUE(inflateFile("packed", "back", isGzip));
            EXPECT_EQ(folder.read("back"), text);
        }
        EXPECT_EQ(gunzippedData(*gzippedData(data)), data);
    }
}

TEST_F(GzipTest, LevelsAreNinths) {
    // Long enough that zlib's stored blocks depend on the room that it is given.
    const auto text = noise(100'000) + std::string(100'000, 'x') + noise(50'000);
    const auto infinity = std::numeric_limits<float>::infinity();
    const std::vector<std::pair<float, std::optional<int>>> levels = {
        {-0.1F, -1}, {-infinity, -1}, {0, 0},         {-0.0F, 0},         {0.05F, 0},
        {0.06F, 1},  {0.5F, 5},       {1, 9},         {1.05F, 9},         {1.06F, {}},
        {2, {}},     {1e30F, {}},     {infinity, {}}, {std::nanf(""), {}}};
    for (const auto& [level, known] : levels) {
        SCOPED_TRACE(level);
        const auto packed = gzippedDataWithCompressionLevel(toBytes(text), level);
        ASSERT_EQ(packed.has_value(), known.has_value());
        EXPECT_EQ(toText(packed.value_or(Bytes())), known ? plainDeflate(text, *known, 31) : "");
    }
}

TEST_F(GzipTest, LeavesAloneWhatNeedsNothing) {
    for (const std::string text : {"", "\x1f\x8b", "\x1f\x8bno gzip at all"}) {
        EXPECT_EQ(gzippedDataWithCompressionLevel(toBytes(text), 2), toBytes(text));
    }
    for (const std::string text : {"", "\x1f", "plain"}) {
        EXPECT_EQ(gunzippedData(toBytes(text)), toBytes(text));
        EXPECT_FALSE(isGzippedData(toBytes(text)));
    }
    EXPECT_FALSE(DCTar::gzipCompress({}) || DCTar::zlibCompress({}));
    EXPECT_FALSE(DCTar::gzipDecompress(std::span<const std::byte>()) || DCTar::zlibDecompress({}));
    // An empty file is no empty stream.
    folder.write("empty", "");
    EXPECT_FALSE(inflateFile("empty", "back"));
    ASSERT_TRUE(deflateFile("empty", "packed") && inflateFile("packed", "back"));
    EXPECT_EQ(fs::file_size(folder.path / "back"), 0);
    EXPECT_EQ(DCTar::gzipDecompress(toBytes(folder.read("packed"))), Bytes());
}

TEST_F(GzipTest, StreamsThatAreCutEnd) {
    const std::string text = "All work and no play makes Jack a dull boy, and Jack a dull boy.";
    const auto whole = gzipOf(text);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        SCOPED_TRACE(length);
        const auto cut = whole.substr(0, length);
        EXPECT_FALSE(DCTar::gzipDecompress(toBytes(cut)));
        folder.write("cut", cut);
        EXPECT_FALSE(inflateFile("cut", "back"));
        EXPECT_FALSE(fs::exists(folder.path / "back"));
        if (length < 2) continue;
        const auto restored = toText(gunzippedData(toBytes(cut)).value());
        // A buffer that grew by half of the input, zero where nothing came out.
        EXPECT_EQ(restored.size() % (length / 2), 0);
        const auto some = restored.find_last_not_of('\0') + 1;
        EXPECT_EQ(restored.substr(0, some), text.substr(0, some));
        EXPECT_TRUE(some == text.size() || length + 1 < whole.size());
    }
    // A file that is cut where a piece of it ends.
    folder.write("cut", gzipOf(noise(1 << 20)).substr(0, chunk * 16));
    EXPECT_FALSE(inflateFile("cut", "back"));
}

TEST_F(GzipTest, EndsWithTheFirstStreamOfTheRightFormat) {
    const auto first = noise(50'000);
    const auto zlib = toText(DCTar::zlibCompress(toBytes(first)).value());
    for (const auto& stream :
         {gzipOf(first) + gzipOf("second"), gzipOf(first) + "litter", zlib + "litter"}) {
        folder.write("packed", stream);
        EXPECT_EQ(DCTar::gzipDecompress(toBytes(stream)), toBytes(first));
        ASSERT_TRUE(inflateFile("packed", "back"));
        EXPECT_EQ(folder.read("back"), first);
        EXPECT_EQ(inflateFile("packed", "back", false), stream == zlib + "litter");
    }
    EXPECT_FALSE(DCTar::zlibDecompress(toBytes(gzipOf(first))));
}

TEST_F(GzipTest, BombsInMemoryAreDamage) {
    Bytes zeros(maximumInflatedBytes + 1);
    const auto tooMuch = gzippedDataWithCompressionLevel(zeros, 0.1F).value();
    EXPECT_FALSE(DCTar::gzipDecompress(tooMuch));
    EXPECT_EQ(gunzippedData(tooMuch), std::nullopt) << "a part would pass for the whole";
    zeros.pop_back();
    const auto enough = gzippedDataWithCompressionLevel(zeros, 0.1F).value();
    EXPECT_TRUE(DCTar::gzipDecompress(enough) == zeros);
    // Its buffer grows by the half of 40 bytes at a time, its cost must not.
    const auto small = gzipOf(std::string(20'000, 'z'));
    EXPECT_EQ(gunzippedData(toBytes(small))->size(), 20'000);
}

TEST_F(GzipTest, TargetsThatCannotBeWritten) {
    folder.write("plain", noise(1 << 20));
    folder.write("packed", gzipOf(noise(1 << 20)));
    fs::create_directory(folder.path / "folder");
    fs::create_symlink("plain", folder.path / "link");
    fs::create_hard_link(folder.path / "plain", folder.path / "twin");
    for (const auto* target : {"nowhere/target", "folder", "plain", "link", "twin"}) {
        EXPECT_FALSE(deflateFile("plain", target)) << target;
    }
    EXPECT_FALSE(inflateFile("packed", "packed"));
    EXPECT_FALSE(deflateFile("folder", "target"));
    EXPECT_EQ(folder.read("plain"), noise(1 << 20));
    EXPECT_TRUE(fs::is_directory(folder.path / "folder"));

    fs::create_symlink("elsewhere", folder.path / "chosen");
    const ResourceLimit limit(RLIMIT_FSIZE, 100'000);
    EXPECT_FALSE(deflateFile("plain", "chosen"));
    EXPECT_FALSE(inflateFile("packed", "target"));
    EXPECT_TRUE(fs::is_symlink(folder.path / "chosen"));
    EXPECT_FALSE(fs::exists(folder.path / "elsewhere") || fs::exists(folder.path / "target"));
}

TEST_F(GzipTest, TellsWhyAFileWasNotRestored) {
    folder.write("packed", gzipOf("text"));
    folder.write("cut", gzipOf("text").substr(0, 12));
    fs::create_directory(folder.path / "folder");
    const std::vector<std::tuple<std::string, std::string, int>> failures = {
        {"missing", "tar file not found", -2},
        {"cut", "gzip failed to decompress the file", -3},
        {"folder", "gzip failed to decompress the file", -3}};
    for (const auto& [source, detail, code] : failures) {
        std::optional<SupportError> error;
        EXPECT_FALSE(DCTar::gzipDecompress(folder.path / source, folder.path / "back", &error));
        ASSERT_TRUE(error) << source;
        EXPECT_EQ(std::tie(error->domain, error->localizedDescription, error->code),
                  std::tuple("Skepuk", detail, code));
        EXPECT_FALSE(DCTar::gzipDecompress(folder.path / source, folder.path / "back", nullptr));
    }
    std::optional<SupportError> error;
    EXPECT_TRUE(DCTar::gzipDecompress(folder.path / "packed", folder.path / "back", &error));
    EXPECT_FALSE(error);
    EXPECT_EQ(folder.read("back"), "text");
}
