#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "supportsdk/proactive/DCTar.h"
#include "tests/support/TemporaryFolder.h"

using namespace supportsdk;
namespace fs = std::filesystem;

namespace {

void require(bool condition) {
    if (!condition) std::abort();
}

void requireAlike(const TarObject& memory, const TarObject& file, std::uintmax_t offset) {
    require(DCTar::typeForObject(memory, offset) == DCTar::typeForObject(file, offset));
    require(DCTar::nameForObject(memory, offset) == DCTar::nameForObject(file, offset));
    require(DCTar::sizeForObject(memory, offset) == DCTar::sizeForObject(file, offset));
}

/// A fresh folder with a link out of it.
void prepare(const fs::path& folder, const fs::path& outside) {
    fs::remove_all(folder);
    fs::create_directories(outside);
    fs::create_directories(folder);
    fs::create_directory_symlink(outside, folder / "a");
}

std::map<fs::path, std::string> contentsOf(const fs::path& folder) {
    std::map<fs::path, std::string> contents;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        auto& content = contents[entry.path().lexically_relative(folder)];
        std::ifstream file(entry.path(), std::ios::binary);
        if (!entry.is_directory()) content = {std::istreambuf_iterator<char>(file), {}};
    }
    return contents;
}

}  // namespace

/// The input is an archive, extracted from memory and from a file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const test::TemporaryFolder box(test::folderInMemory());
    static const auto outside = box.path / "outside";
    static const auto fromMemory = box.path / "memory";
    static const auto fromFile = box.path / "file";
    static const auto archive = (box.path / "archive").string();

    const std::span input(reinterpret_cast<const std::byte*>(data), size);
    require(DCTar::writeFileDataForObject(input, 0, size, archive));
    const auto file = FileHandle::forReadingAtPath(archive);
    for (std::uintmax_t offset = 0; offset <= size; offset += 512) {
        requireAlike(input, file.get(), offset);
    }

    prepare(fromMemory, outside);
    prepare(fromFile, outside);
    require(DCTar::untarData(input, fromMemory.string(), nullptr));
    require(DCTar::untarFileAtPath(archive, fromFile.string(), nullptr));
    require(contentsOf(fromMemory) == contentsOf(fromFile));
    require(fs::is_symlink(fromFile / "a") && fs::is_empty(outside));
    require(std::distance(fs::directory_iterator(box.path), {}) == 4);
    return 0;
}
