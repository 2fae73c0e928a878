#include "supportsdk/proactive/tar/TarHeader.h"

#include <gtest/gtest.h>

#include "supportsdk/platform/Values.h"
#include "supportsdk/proactive/tar/PaxHeader.h"
#include "supportsdk/proactive/tar/PaxRecords.h"

using namespace std::string_literals;

namespace supportsdk {
namespace {

TEST(TarHeader, EveryByteOfAHeaderIsAtItsPlace) {
    constexpr auto plain = FileAttributes::Kind::plain;
    const FileAttributes attributes{plain,  0104644,       1000,  01234567,
                                    "olga", "gr\xC3\xBCn", 01234, 1700000000};
    auto expected = std::string(512, '\0');
    const auto put = [&](std::size_t offset, const std::string& text) {
        expected.replace(offset, text.size(), text);
    };
    put(0, "report.txt");
    put(100, "004644 \0"s);
    put(108, "001750 \0"s);
    put(116, "1234567\0"s);
    put(124, "00000001234 ");
    put(136, "14524770400 ");
    put(148, "        ");
    put(156, "0");
    put(257, "ustar\00000"s);
    put(265, "olga");
    put(329, "000000 \0"s);
    put(337, "000000 \0"s);
    put(345, "logs/today");
    // Added up by another program.
    put(148, "014250\0 "s);

    EXPECT_EQ(toText(makeTarHeader({"logs/today", "report.txt"}, attributes, tarType::file)),
              expected);

    const auto folder = toText(makeTarHeader({"", "logs/"}, attributes, tarType::folder));
    EXPECT_EQ(folder.substr(124, 12), "00000000000 ") << "a folder has no size";
    EXPECT_EQ(folder[156], '5');
}

TEST(TarHeader, NumbersGrowOverTheirTerminatorAndThenIntoBase256) {
    struct Row {
        std::int64_t value;
        std::size_t minimum, maximum;
        std::string expected;
    };
    constexpr auto big = std::int64_t{1} << 33;
    const Row rows[] = {
        {0777777, 6, 8, "777777 \0"s},
        {01000000, 6, 8, "1000000\0"s},
        {077777777, 6, 8, "77777777"},
        {0100000000, 6, 8, "\x80\0\0\0\x01\0\0\0"s},
        {-2, 6, 8, "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFE"},
        {INT64_MIN, 6, 8, "\x80\0\0\0\0\0\0\0"s},
        {big - 1, 11, 12, "77777777777 "},
        {big, 11, 12, "100000000000"},
        {big * 8, 11, 12, "\x80\0\0\0\0\0\0\x10\0\0\0\0"s},
        {big - 1, 11, 11, "77777777777 "},
        {big, 11, 11, "\x80\0\0\0\0\0\x02\0\0\0\0 "s},
        {-1, 11, 11, "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF "},
    };
    for (const auto& row : rows) {
        auto field = toBytes(row.maximum == 8 ? "000000 \0"s : "00000000000 "s);
        writeTarNumber(field, row.minimum, row.maximum, row.value);
        EXPECT_EQ(toText(field), row.expected) << row.value << " in " << row.maximum;
    }
}

TEST(PaxHeader, ItsRecordsHoldWhatThePlainHeaderCannot) {
    constexpr auto plain = FileAttributes::Kind::plain;
    const FileAttributes attributes{
        plain, 0644, 010000000, 010000000, std::string(32, 'u'), "gr\xC3\xBCn", 0100000000000, -1};
    const auto text = toText(makePaxHeader("file", attributes, tarType::file));
    EXPECT_EQ(text.substr(136, 12), "00000000000 ");
    EXPECT_EQ(text.substr(512, text.find('\0', 512) - 512),
              paxRecord("hdrcharset", "BINARY") + paxRecord("size", "8589934592") +
                  paxRecord("mtime", "-1") + paxRecord("uid", "2097152") +
                  paxRecord("gid", "2097152") + paxRecord("uname", attributes.ownerName) +
                  "15 gname=gr\xC3\xBCn\n");
}

TEST(TarHeader, LongPathsAreSplitAtASlash) {
    const auto a = [](std::size_t count) { return std::string(count, 'a'); };
    struct Row {
        std::string path;
        std::optional<TarName> split;
        TarName fitted;
    };
    const auto same = [](const std::string& path, const TarName& name) {
        return Row{path, name, name};
    };
    const Row rows[] = {
        same("b/" + a(98), {"", "b/" + a(98)}),
        same("b/" + a(99), {"b", a(99)}),
        same("/b/" + a(98), {"/b", a(98)}),
        same("b/c/" + a(98), {"b", "c/" + a(98)}),
        same(a(155) + "/" + a(100), {a(155), a(100)}),
        same(a(101) + "/", {a(101), ""}),
        {a(101), {}, {"a", a(100)}},
        {a(255) + "/", {}, {a(155), a(99) + "/"}},
        {"b/" + a(200), {}, {"b/" + a(100), a(100)}},
        {a(250) + "/b", {}, {a(155), "b"}},
        {"x/" + a(100) + "/" + a(54) + "/" + a(100), {}, {a(100) + "/" + a(54), a(100)}},
        {"x/" + a(101) + "/" + a(54) + "/" + a(100), {}, {a(54), a(100)}},
    };
    const auto both = [](const std::optional<TarName>& name) {
        return name ? name->prefix + "|" + name->name : "none";
    };
    for (const auto& row : rows) {
        EXPECT_EQ(both(splitTarName(row.path)), both(row.split));
        EXPECT_EQ(both(fitTarName(row.path)), both(row.fitted));
    }
}

}  // namespace
}  // namespace supportsdk
