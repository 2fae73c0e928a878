#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>

#include "tests/architecture/Floors.h"

namespace supportsdk::test {
namespace {

namespace fs = std::filesystem;

/// A small project in a fresh folder, to see the walk fail where it must.
class PlantedProject : public testing::Test {
 protected:
    PlantedProject() {
        std::string name = (fs::temp_directory_path() / "floors-XXXXXX").string();
        root = mkdtemp(name.data());
    }
    ~PlantedProject() override { fs::remove_all(root); }

    void plant(const std::string& file, const std::string& include) {
        fs::create_directories((root / file).parent_path());
        std::ofstream(root / file, std::ios::app) << "#include \"" << include << "\"\n";
    }

    fs::path root;
};

TEST(Floors, NoFileOfTheProjectLooksUp) {
    for (const auto& breach : findBreaches(SUPPORTSDK_SOURCE_DIR)) {
        ADD_FAILURE() << breach.file << " includes " << breach.include << ": " << breach.why;
    }
}

TEST(Floors, NoFoldersOfTheProjectFormACircle) {
    EXPECT_THAT(findCircles(SUPPORTSDK_SOURCE_DIR), testing::IsEmpty());
}

TEST_F(PlantedProject, EveryKindOfBreachIsFound) {
    plant("supportsdk/core/Up.cpp", "supportsdk/chat/QuorrandChat.h");
    plant("supportsdk/chat/Sideways.cpp", "supportsdk/forms/Form.h");
    plant("supportsdk/platform/Out.h", "backends/curl/CurlHttpClient.h");
    plant("backends/curl/Core.cpp", "supportsdk/core/Support.h");
    plant("backends/curl/Neighbour.cpp", "backends/sqlite/SqliteUserDefaults.h");
    plant("service/Kit.cpp", "supportsdk/core/Support.h");
    plant("supportsdk/core/Test.cpp", "tests/support/FakePlatform.h");
    plant("hosts/cli/Relative.cpp", "Reports.h");

    EXPECT_EQ(findBreaches(root).size(), 8u);
}

TEST_F(PlantedProject, WhatTheFloorsAllowIsNoBreach) {
    plant("supportsdk/launcher/Down.cpp", "supportsdk/chat/QuorrandChat.h");
    plant("supportsdk/chat/Own.cpp", "supportsdk/chat/xmpp/XmppRoom.h");
    plant("backends/LinuxPlatform.cpp", "backends/curl/CurlHttpClient.h");
    plant("hosts/cli/main.cpp", "backends/LinuxPlatform.h");
    plant("service/Own.cpp", "supportsdk/core/Fields.h");

    EXPECT_THAT(findBreaches(root), testing::IsEmpty());
}

TEST_F(PlantedProject, FoldersThatIncludeEachOtherAreACircle) {
    plant("supportsdk/chat/A.h", "supportsdk/chat/xmpp/B.h");
    plant("supportsdk/chat/xmpp/B.h", "supportsdk/chat/A.h");

    EXPECT_THAT(findCircles(root),
                testing::ElementsAre("supportsdk/chat -> supportsdk/chat/xmpp -> supportsdk/chat"));
}

}  // namespace
}  // namespace supportsdk::test
