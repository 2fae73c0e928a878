#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>

#include "supportsdk/proactive/Dump.h"
#include "supportsdk/proactive/dump/SkippedNames.h"
#include "supportsdk/proactive/tar/TarHeader.h"
#include "tests/support/TemporaryFolder.h"

using namespace supportsdk;
namespace fs = std::filesystem;
using End = DumpResult::End;

namespace {

void require(bool condition) {
    if (!condition) std::abort();
}

/// Files and folders; nothing else may come out of an archive.
std::size_t countBelow(const fs::path& folder) {
    std::size_t count = 0;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        const auto status = entry.symlink_status();
        require(fs::is_regular_file(status) || fs::is_directory(status));
        // So that it can be listed, and removed, by others than root.
        if (fs::is_directory(status))
            fs::permissions(entry, fs::perms::owner_all, fs::perm_options::add);
        count++;
    }
    return count;
}

void checkResult(const DumpResult& result) {
    require(result.message.empty() == (result.end != End::failed));
    require(result.skipped.size() <= SkippedNames::maximum + 1);
}

}  // namespace

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maximum);

/// Sums are right again after each change, mostly: behind a wrong one nothing is looked at.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maximum, unsigned seed) {
    size = LLVMFuzzerMutate(data, size, maximum);
    for (std::size_t start = 0; seed % 8 != 0 && start + tarBlockBytes <= size;
         start += tarBlockBytes) {
        TarBlock header;
        std::memcpy(header.data(), data + start, header.size());
        if (std::memcmp(header.data() + tarField::magic.offset, "ustar", 5) != 0) continue;
        writeTarChecksum(header);
        std::memcpy(data + start, header.data(), header.size());
    }
    return size;
}

/// The input is an archive. What comes out of it goes into another, and out of that.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const test::TemporaryFolder box(test::folderInMemory());
    static const auto inside = box.path / "inside";
    static const auto again = box.path / "again";
    static const auto packed = box.path / "packed";
    DumpOptions options;
    options.maximumBytes = std::size_t{1024} * 1024;
    options.compressionLevel = 1;

    const auto archive =
        box.write("archive", std::string_view(reinterpret_cast<const char*>(data), size));
    const auto result = unpackDump(archive, inside, options);
    checkResult(result);
    require(result.end != End::cancelled);
    const auto count = countBelow(inside);

    const auto second = packDump({inside}, packed, options);
    checkResult(second);
    require(second.end == End::done && second.files + second.folders <= count + 1);
    const auto third = unpackDump(packed, again);
    checkResult(third);
    require(third.end == End::done && third.skipped.empty());
    require(third.files == second.files && third.folders == second.folders);
    require(countBelow(again) == third.files + third.folders);
    require(std::distance(fs::directory_iterator(box.path), {}) == 4);
    fs::remove_all(inside);
    fs::remove_all(again);
    return 0;
}
