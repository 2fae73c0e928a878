#include <cstdlib>

#include "backends/system/GettextLocalizer.h"
#include "supportsdk/platform/Values.h"
#include "tests/support/TemporaryFolder.h"

namespace supportsdk::test {
namespace {

namespace fs = std::filesystem;

const fs::path translations = fs::path(SUPPORTSDK_BINARY_DIR) / "resources/translations";

std::string translated(const std::vector<std::string>& languages, const std::string& text) {
    return GettextLocalizer(translations, languages).localized(text);
}

TEST(GettextLocalizer, TranslatesByPreferenceAndFallsBackToTheKey) {
    EXPECT_EQ(translated({"de"}, "Cancel"), "Abbrechen");
    EXPECT_EQ(translated({"de_AT.UTF-8@euro"}, "Cancel"), "Abbrechen");
    EXPECT_EQ(translated({"xx", "de_DE"}, "Cancel"), "Abbrechen");
    EXPECT_EQ(translated({"en_GB", "de"}, "Cancel"), "Cancel");
    EXPECT_EQ(translated({}, "Cancel"), "Cancel");
    EXPECT_EQ(translated({"de"}, "no such text"), "no such text");
    EXPECT_EQ(translated({"de"}, ""), "");
    EXPECT_EQ(translated({"../translations/de", "de/../de", ""}, "Cancel"), "Cancel");
}

TEST(GettextLocalizer, ADamagedCatalogueIsAsGoodAsNone) {
    const TemporaryFolder folder;
    std::ifstream in(translations / "de/LC_MESSAGES/supportsdk.mo", std::ios::binary);
    const std::string whole{std::istreambuf_iterator<char>(in), {}};
    ASSERT_FALSE(whole.empty());

    // Every prefix, and every word of the header and the first table set to the largest number.
    for (std::size_t length = 0; length < whole.size(); length += 61) {
        folder.write("de/LC_MESSAGES/supportsdk.mo", whole.substr(0, length));
        const auto text = GettextLocalizer(folder.path, {"de"}).localized("Cancel");
        EXPECT_TRUE(text == "Cancel" || text == "Abbrechen");
    }
    for (std::size_t offset = 0; offset < 96; offset += 4) {
        auto bent = whole;
        bent.replace(offset, 4, "\xff\xff\xff\xff");
        folder.write("de/LC_MESSAGES/supportsdk.mo", bent);
        const auto text = GettextLocalizer(folder.path, {"de"}).localized("Cancel");
        EXPECT_TRUE(text == "Cancel" || text == "Abbrechen");
    }
}

class EnvironmentTest : public testing::Test {
 protected:
    EnvironmentTest() {
        for (const char* name : names) unsetenv(name);
    }
    ~EnvironmentTest() override {
        for (const char* name : names) unsetenv(name);
    }
    static constexpr auto names = {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"};
};

TEST_F(EnvironmentTest, TheLocaleDecidesWhetherAndTheListDecidesWhich) {
    EXPECT_THAT(languagesOfEnvironment(), testing::IsEmpty());

    setenv("LANG", "de_DE.UTF-8", 1);
    EXPECT_THAT(languagesOfEnvironment(), testing::ElementsAre("de_DE.UTF-8"));

    setenv("LANGUAGE", "fr::de", 1);
    EXPECT_THAT(languagesOfEnvironment(), testing::ElementsAre("fr", "de", "de_DE.UTF-8"));

    setenv("LC_MESSAGES", "es_ES", 1);
    EXPECT_EQ(languagesOfEnvironment().back(), "es_ES");

    setenv("LC_ALL", "C.UTF-8", 1);
    EXPECT_THAT(languagesOfEnvironment(), testing::IsEmpty());
}

}  // namespace
}  // namespace supportsdk::test
