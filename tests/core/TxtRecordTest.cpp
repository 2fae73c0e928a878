#include "supportsdk/core/TxtRecord.h"

#include <gtest/gtest.h>

namespace supportsdk {
namespace {

std::string encoded(const std::map<std::string, std::string>& texts) {
    std::map<std::string, Bytes> pairs;
    for (const auto& [key, value] : texts) pairs[key] = toBytes(value);
    return toText(dataFromTXTRecordDictionary(pairs));
}

TEST(TxtRecord, HoldsThePairsInTheOrderOfTheirKeys) {
    EXPECT_EQ(encoded({{"version", "1.0"}, {"a b", ""}, {"device", "x=\xFF"}}),
              "\x04"
              "a b="
              "\x0A"
              "device=x=\xFF"
              "\x0B"
              "version=1.0");
    EXPECT_EQ(encoded({}), std::string(1, '\0')) << "a record is never without a string";
}

TEST(TxtRecord, LeavesOutWhatARecordCannotCarry) {
    const std::string longest(253, 'v');
    EXPECT_EQ(encoded({{"k", longest}, {"l", longest + "v"}}), "\xFFk=" + longest);
    EXPECT_EQ(encoded({{"", "v"}, {"a=b", "v"}, {"a\tb", "v"}, {"\xC3\xA4", "v"}, {"~", "v"}}),
              "\x03~=v");
    EXPECT_EQ(encoded({{"PRIVATE", "forged"}, {"Private", "forged"}, {"private", "hash"}}),
              "\x0Cprivate=hash");

    std::map<std::string, std::string> many;
    for (int number = 100; number < 400; ++number) many[std::to_string(number)] = longest.substr(2);
    const auto full = encoded(many);
    EXPECT_EQ(full.size(), 255U * 256) << "whole pairs only";
    many["z"] = std::string(200, 'v');
    EXPECT_EQ(encoded(many), full + "\xCAz=" + many["z"]) << "a shorter one still fits";
}

}  // namespace
}  // namespace supportsdk
