#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <regex>
#include <set>

#include "tests/support/TemporaryFolder.h"

namespace supportsdk::test {
namespace {

namespace fs = std::filesystem;

/// What a file in `folder` may include beside its own folder. The longest matching folder counts.
const std::map<std::string, std::vector<std::string>>& allowed() {
    static const std::vector<std::string> ground = {"supportsdk/platform", "supportsdk/core",
                                                    "supportsdk/theme"};
    static const std::vector<std::string> library = {"supportsdk"};
    static const std::map<std::string, std::vector<std::string>> floors = {
        {"supportsdk/platform", {}},
        {"supportsdk/core", {"supportsdk/platform"}},
        {"supportsdk/theme", {"supportsdk/platform", "supportsdk/core"}},
        {"supportsdk/chat", ground},
        {"supportsdk/knowledge", ground},
        {"supportsdk/forms", ground},
        {"supportsdk/video", ground},
        {"supportsdk/proactive", ground},
        {"supportsdk/launcher", library},
        {"backends", {"supportsdk/platform"}},
        {"screens", {"supportsdk", "backends"}},
        {"hosts", {"supportsdk", "backends", "screens"}},
        // The stand-in for the cloud service shares pure functions with the kit and nothing else.
        {"service",
         {"supportsdk/platform", "supportsdk/core/CaseFolding.h", "supportsdk/core/Fields.h"}},
    };
    return floors;
}

bool isBelow(const std::string& path, const std::string& folder) {
    return path == folder || path.starts_with(folder + "/");
}

/// The floor that `path` lies on; "" when it lies on none.
std::string floorOf(const std::string& path) {
    std::string best;
    for (const auto& [folder, below] : allowed()) {
        if (isBelow(path, folder) && folder.size() > best.size()) best = folder;
    }
    return best;
}

/// Backends must not know each other, so each of their folders is a room of its own. The exceptions
/// are LinuxPlatform, which puts them together, and the room that all may look into.
constexpr const char* sharedRoom = "backends/posix";

std::string backendOf(const std::string& path) {
    static const std::regex folder("^(backends/[^/]+)/.*");
    std::smatch match;
    return std::regex_match(path, match, folder) ? match[1].str() : "";
}

std::vector<std::string> projectIncludes(const fs::path& file) {
    static const std::regex pattern("^\\s*#\\s*include\\s*\"([^\"]+)\".*");
    std::vector<std::string> includes;
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);) {
        std::smatch match;
        if (std::regex_match(line, match, pattern)) includes.push_back(match[1]);
    }
    return includes;
}

bool isSource(const fs::path& path) {
    return path.extension() == ".h" || path.extension() == ".cpp";
}

template <typename Visit>
void forEachInclude(const fs::path& root, Visit visit) {
    for (const char* top : {"supportsdk", "backends", "screens", "hosts", "service"}) {
        if (!fs::exists(root / top)) continue;
        for (const auto& entry : fs::recursive_directory_iterator(root / top)) {
            if (!entry.is_regular_file() || !isSource(entry.path())) continue;
            const auto file = fs::relative(entry.path(), root).generic_string();
            for (const auto& include : projectIncludes(entry.path())) visit(file, include);
        }
    }
}

std::string objection(const std::string& file, const std::string& include) {
    const auto from = floorOf(file);
    const auto to = floorOf(include);
    if (from.empty()) return "the file lies on no floor";
    if (to.empty()) {
        if (isBelow(include, "tests") || isBelow(include, "bench")) return "looks into the tests";
        return "is not named from the root of the project";
    }
    if (from == "backends" && to == "backends") {
        const auto room = backendOf(file);
        const auto other = backendOf(include);
        if (!room.empty() && room != other && other != sharedRoom)
            return "looks into another backend";
    }
    if (from == to) return "";
    for (const auto& folder : allowed().at(from)) {
        if (isBelow(include, folder)) return "";
    }
    return from + " must not look into " + to;
}

/// One include of a project file that the order of the floors forbids.
struct Breach {
    std::string file;
    std::string include;
    std::string why;
};

/// Walks all sources below `root` and reports every include that looks up a floor, sideways into a
/// backend, or out of the library into tests, hosts or the service.
std::vector<Breach> findBreaches(const fs::path& root) {
    std::vector<Breach> breaches;
    forEachInclude(root, [&](const std::string& file, const std::string& include) {
        if (auto why = objection(file, include); !why.empty())
            breaches.push_back({file, include, why});
    });
    return breaches;
}

/// The folders of the library that include each other in a circle, as "a -> b -> a".
std::vector<std::string> findCircles(const fs::path& root) {
    std::map<std::string, std::set<std::string>> edges;
    forEachInclude(root, [&](const std::string& file, const std::string& include) {
        const auto from = fs::path(file).parent_path().generic_string();
        const auto to = fs::path(include).parent_path().generic_string();
        if (from != to) edges[from].insert(to);
    });

    std::vector<std::string> circles;
    std::vector<std::string> path;
    std::set<std::string> done;
    const std::function<void(const std::string&)> walk = [&](const std::string& folder) {
        if (const auto seen = std::find(path.begin(), path.end(), folder); seen != path.end()) {
            std::string circle;
            for (auto step = seen; step != path.end(); ++step) circle += *step + " -> ";
            circles.push_back(circle + folder);
            return;
        }
        if (done.contains(folder)) return;
        path.push_back(folder);
        for (const auto& next : edges[folder]) walk(next);
        path.pop_back();
        done.insert(folder);
    };
    for (const auto& [folder, targets] : std::map(edges)) walk(folder);
    return circles;
}

/// A small project in a fresh folder, to see the walk fail where it must.
class PlantedProject : public testing::Test {
 protected:
    void plant(const std::string& file, const std::string& include) const {
        root.write(file, "#include \"" + include + "\"\n");
    }

    TemporaryFolder root;
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

    EXPECT_EQ(findBreaches(root.path).size(), 8u);
}

TEST_F(PlantedProject, WhatTheFloorsAllowIsNoBreach) {
    plant("supportsdk/launcher/Down.cpp", "supportsdk/chat/QuorrandChat.h");
    plant("supportsdk/chat/Own.cpp", "supportsdk/chat/xmpp/XmppRoom.h");
    plant("backends/LinuxPlatform.cpp", "backends/curl/CurlHttpClient.h");
    plant("hosts/cli/main.cpp", "backends/LinuxPlatform.h");
    plant("service/Own.cpp", "supportsdk/core/Fields.h");

    EXPECT_THAT(findBreaches(root.path), testing::IsEmpty());
}

TEST_F(PlantedProject, FoldersThatIncludeEachOtherAreACircle) {
    plant("supportsdk/chat/A.h", "supportsdk/chat/xmpp/B.h");
    plant("supportsdk/chat/xmpp/B.h", "supportsdk/chat/A.h");

    EXPECT_THAT(findCircles(root.path),
                testing::ElementsAre("supportsdk/chat -> supportsdk/chat/xmpp -> supportsdk/chat"));
}

}  // namespace
}  // namespace supportsdk::test
