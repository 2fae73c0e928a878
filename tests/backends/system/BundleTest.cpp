#include <sys/stat.h>

#include "backends/system/DirectoryBundle.h"
#include "tests/support/TemporaryFolder.h"

namespace supportsdk::test {
namespace {

namespace fs = std::filesystem;

class BundleTest : public testing::Test {
 protected:
    std::optional<std::string> text(const std::string& name, const std::string& type) {
        const auto bytes = bundle.data(name, type);
        return bytes ? std::optional(toText(*bytes)) : std::nullopt;
    }

    TemporaryFolder folder;
    DirectoryBundle bundle{folder.path / "bundle"};
};

TEST_F(BundleTest, ReadsResourcesAndTheStringsOfItsInformation) {
    folder.write("bundle/Info.json",
                 R"({"CFBundleIdentifier": "test.host", "CFBundleVersion": 7})");
    folder.write("bundle/theme.json", "{}");
    folder.write("bundle/images/plain", "p");
    folder.write("bundle/empty.txt", "");

    EXPECT_EQ(bundle.identifier(), "test.host");
    EXPECT_EQ(bundle.info("CFBundleVersion"), std::nullopt);
    EXPECT_EQ(text("theme", "json"), "{}");
    EXPECT_EQ(text("images/plain", ""), "p");
    EXPECT_EQ(text("empty", "txt"), "");
    EXPECT_EQ(text("missing", "json"), std::nullopt);
}

TEST_F(BundleTest, NoNameLeadsOutOfTheFolder) {
    folder.write("bundle/in.json", "in");
    const auto secret = folder.write("secret.json", "out");
    folder.write("bundle-neighbour/near.json", "out");
    fs::create_symlink(secret, folder.path / "bundle/link.json");
    fs::create_directory_symlink(folder.path, folder.path / "bundle/up");
    fs::create_symlink("in.json", folder.path / "bundle/inner.json");

    for (const std::string name : {"../secret", "x/../../secret", "link", "up/secret",
                                   "up/bundle-neighbour/near", "..", "."}) {
        EXPECT_EQ(bundle.path(name, "json"), std::nullopt) << name;
    }
    EXPECT_EQ(bundle.path((folder.path / "secret").string(), "json"), std::nullopt);
    EXPECT_EQ(bundle.path(std::string("in.json\0/../../x", 16), ""), std::nullopt);
    EXPECT_EQ(bundle.path("", ""), std::nullopt);
    EXPECT_EQ(bundle.path("up", ""), std::nullopt);
    EXPECT_EQ(text("inner", "json"), "in");
}

TEST_F(BundleTest, PipesHugeFilesAndBrokenInformationGiveNothing) {
    folder.write("bundle/Info.json", "[[[");
    folder.write("bundle/huge.bin", "");
    fs::resize_file(folder.path / "bundle/huge.bin", DirectoryBundle::maximumFileBytes + 1);
    ASSERT_EQ(mkfifo((folder.path / "bundle/pipe").c_str(), 0600), 0);

    EXPECT_EQ(text("huge", "bin"), std::nullopt);
    EXPECT_EQ(text("pipe", ""), std::nullopt);
    EXPECT_EQ(bundle.identifier(), std::nullopt);
    EXPECT_EQ(DirectoryBundle({}).data("Info", "json"), std::nullopt);
    EXPECT_EQ(DirectoryBundle(folder.path / "nowhere").identifier(), std::nullopt);
}

}  // namespace
}  // namespace supportsdk::test
