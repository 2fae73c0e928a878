#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace supportsdk::test {

/// One include of a project file that the order of the floors forbids.
struct Breach {
    std::string file;
    std::string include;
    std::string why;

    bool operator==(const Breach&) const = default;
};

/// Walks all sources below `root` and reports every include that looks up a floor, sideways into a
/// backend, or out of the library into tests, hosts or the service.
std::vector<Breach> findBreaches(const std::filesystem::path& root);

/// The folders of the library that include each other in a circle, as "a -> b -> a"; empty when
/// none do.
std::vector<std::string> findCircles(const std::filesystem::path& root);

}  // namespace supportsdk::test
