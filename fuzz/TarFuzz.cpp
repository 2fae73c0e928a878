#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "supportsdk/proactive/DCTar.h"

using namespace supportsdk;
namespace fs = std::filesystem;

namespace {

void require(bool condition) {
    if (!condition) std::abort();
}

/// In memory where the system has such a folder: each input makes files.
class Box {
 public:
    Box() {
        std::error_code ignored;
        const fs::path memory = "/dev/shm";
        auto name = ((fs::is_directory(memory, ignored) ? memory : fs::temp_directory_path()) /
                     "tar-fuzz-XXXXXX")
                        .string();
        require(mkdtemp(name.data()) != nullptr);
        path = name;
    }
    ~Box() {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
    Box(const Box&) = delete;
    Box& operator=(const Box&) = delete;

    fs::path path;
};

void requireAlike(const TarObject& memory, const TarObject& file, std::uintmax_t offset) {
    require(DCTar::typeForObject(memory, offset) == DCTar::typeForObject(file, offset));
    require(DCTar::nameForObject(memory, offset) == DCTar::nameForObject(file, offset));
    require(DCTar::sizeForObject(memory, offset) == DCTar::sizeForObject(file, offset));
}

std::size_t countIn(const fs::path& folder) {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

}  // namespace

/// The input is an archive. It is extracted beside a folder that a link inside leads to.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Box box;
    static const auto outside = box.path / "outside";
    static const auto inside = box.path / "inside";
    static const auto archive = (box.path / "archive").string();

    const std::span input(reinterpret_cast<const std::byte*>(data), size);
    fs::create_directories(outside);
    fs::create_directories(inside);
    fs::create_directory_symlink(outside, inside / "a");
    require(DCTar::untarData(input, inside.string(), nullptr));
    require(fs::is_symlink(inside / "a") && fs::is_empty(outside));
    require(countIn(box.path) <= 3);

    require(DCTar::writeFileDataForObject(input, 0, size, archive));
    const auto file = FileHandle::forReadingAtPath(archive);
    for (std::uintmax_t offset = 0; offset <= size; offset += 512) {
        requireAlike(input, file.get(), offset);
    }
    fs::remove_all(inside);
    return 0;
}
