#include <gmock/gmock.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "supportsdk/proactive/DCTar.h"
#include "supportsdk/proactive/Dump.h"
#include "supportsdk/proactive/GzipData.h"
#include "tests/support/TemporaryFolder.h"

using namespace supportsdk;
using namespace supportsdk::test;
namespace fs = std::filesystem;

namespace {

constexpr std::uintmax_t gibibyte = std::uintmax_t{1} << 30;
constexpr std::uintmax_t fileBytes = 2 * gibibyte;
constexpr std::uintmax_t neededBytes = 5 * gibibyte;
constexpr long allowedKibibytes = 8 * 1024;

/// Deflate makes a thousandth of zeros, and not less.
constexpr std::uintmax_t mostDeflated(std::uintmax_t length) {
    return length / 1100;
}

bool isDone(const DumpResult& result) {
    return result.end == DumpResult::End::done && result.skipped.empty();
}

/// Peak of the resident memory of a child that does `work`, in KiB; -1 when it failed.
long peakOf(const std::function<bool()>& work) {
    const auto child = fork();
    if (child == 0) _exit(work() ? 0 : 1);
    int status = 0;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) != child || status != 0) return -1;
    return usage.ru_maxrss;
}

}  // namespace

TEST(DumpMemory, StaysFixedWhateverTheSizeOfAFile) {
    const TemporaryFolder folder;
    if (fs::space(folder.path).available < neededBytes) GTEST_SKIP() << "needs 5 GiB of disk";
    const auto path = [&](const char* name) { return (folder.path / name).string(); };
    folder.write("plain/file", "It begins with a word, and the rest is a hole.");
    fs::resize_file(path("plain/file"), fileBytes);
    const auto open = [&](const char* name) { return FileHandle::forReadingAtPath(path(name)); };

    struct Work {
        const char* name;
        std::function<bool()> run;
        const char* file;
        std::uintmax_t least = fileBytes;
    };
    const std::vector<Work> works = {
        {"tar", [&] { return DCTar::tarFileAtPath(path("plain"), path("tar"), nullptr); }, "tar"},
        {"untar", [&] { return DCTar::untarFileAtPath(path("tar"), path("back"), nullptr); },
         "back/file"},
        {"deflate", [&] { return DCTar::fileDeflate(*open("plain/file"), true, path("gz")); }, "gz",
         mostDeflated(fileBytes)},
        {"inflate", [&] { return DCTar::fileInflate(*open("gz"), true, path("back/tar")); },
         "back/tar"},
        {"pack", [&] { return isDone(packDump({path("plain")}, path("gz"))); }, "gz",
         mostDeflated(fileBytes)},
        {"unpack", [&] { return isDone(unpackDump(path("gz"), path("back"))); }, "back/plain/file"},
    };
    const auto idle = peakOf([] { return true; });
    for (const auto& work : works) {
        const auto peak = peakOf(work.run);
        EXPECT_GE(peak, 0) << work.name << " failed";
        EXPECT_LT(peak - idle, allowedKibibytes) << work.name;
        EXPECT_GE(fs::file_size(path(work.file)), work.least) << work.name;
        fs::remove_all(path("back"));
        fs::create_directory(path("back"));
    }
}

TEST(DumpMemory, BlocksLongerThanZlibCanCount) {
    // Pages of zeros that nobody writes to take no memory.
    constexpr std::size_t length = 4 * gibibyte + 100;
    void* const zeros =
        mmap(nullptr, length, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    ASSERT_NE(zeros, MAP_FAILED);
    const auto data = std::span(static_cast<const std::byte*>(zeros), length);
    const auto packed = gzippedDataWithCompressionLevel(data, 0.1F);
    munmap(zeros, length);
    ASSERT_TRUE(packed);
    EXPECT_GT(packed->size(), mostDeflated(length));
}
