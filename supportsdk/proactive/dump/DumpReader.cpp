#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "supportsdk/proactive/Dump.h"
#include "supportsdk/proactive/dump/ArchiveInput.h"
#include "supportsdk/proactive/dump/DumpMeter.h"
#include "supportsdk/proactive/dump/ExtendedEntry.h"
#include "supportsdk/proactive/dump/PendingFolders.h"
#include "supportsdk/proactive/dump/SkippedNames.h"
#include "supportsdk/proactive/files/TargetFolder.h"
#include "supportsdk/proactive/tar/TarEntry.h"
#include "supportsdk/proactive/tar/TarHeader.h"

namespace supportsdk {

namespace {

/// Headers that hold a text for the next entry, and what of them is held in memory.
constexpr std::uintmax_t maximumText = std::uintmax_t{1024} * 1024;
constexpr std::size_t gnuSparseMapContinues = 504;
/// Until a file has its own permissions nobody else reads it.
constexpr std::uint32_t ownerAlone = 0600;

bool isFile(char type) {
    constexpr char contiguousFile = '7';
    return type == tarType::file || type == tarType::oldFile || type == contiguousFile;
}

/// Links, devices, pipes and folders have no data, whatever their size field holds.
bool hasData(char type) {
    return type < '1' || type > '6';
}

/// What says more of the disk than of the one name.
bool isFatal(const std::error_code& error) {
    constexpr std::array faults = {std::errc::no_space_on_device,
                                   std::errc::read_only_file_system,
                                   std::errc::io_error,
                                   std::errc::too_many_files_open,
                                   std::errc::too_many_files_open_in_system,
                                   std::errc::not_enough_memory};
    return error.value() == EDQUOT ||
           std::ranges::any_of(faults, [&](std::errc fault) { return error == fault; });
}

class DumpReader {
 public:
    DumpReader(std::shared_ptr<FileHandle> archive, TargetFolder target, const DumpOptions& options)
        : options_(options),
          meter_(options),
          input_(std::move(archive), meter_),
          target_(std::move(target)),
          folders_(target_) {}

    DumpResult run() {
        while (readEntry()) continue;
        folders_.settleAll();
        meter_.report();
        result_.skipped = skipped_.take();
        return std::move(result_);
    }

 private:
    // --- Headers ---

    /// False after the last one, and after a failure.
    bool readEntry() {
        const auto block = nextBlock();
        if (block.empty()) return false;
        if (isEmptyBlock(block)) return finish();
        auto entry = readTarEntry(block);
        if (!entry) return fail(isBegun_ ? "the archive is damaged" : "this is no tar archive");
        isBegun_ = true;
        input_.consume(block.size());
        return fits(hasData(entry->type) ? entry->size : 0) && handle(*entry);
    }

    bool handle(TarEntry& entry) {
        constexpr char globalRecords = 'g';
        constexpr char gnuLinkTarget = 'K';
        constexpr char gnuVolumeName = 'V';
        switch (entry.type) {
            case tarType::pax:
            case tarType::gnuName:
                return readExtension(entry);
            case globalRecords:
            case gnuLinkTarget:
            case gnuVolumeName:
                return passData(entry.size);
            default:
                break;
        }
        const auto extended = std::exchange(extended_, {});
        extended.applyTo(entry);
        meter_.begin(entry.name);
        if (!fits(hasData(entry.type) ? entry.size : 0)) return false;
        return extended.isSparse() ? skip(entry) : unpack(entry);
    }

    bool readExtension(const TarEntry& entry) {
        if (entry.size > maximumText) return fail("the archive holds a name that is too long");
        std::string text;
        const bool isRead = passBytes(entry.size, [&](std::span<const std::byte> bytes) {
            text.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
            return true;
        });
        if (!isRead || !passBytes(tarPaddingOf(entry.size))) return false;
        if (entry.type == tarType::gnuName)
            extended_.setName(text);
        else if (!extended_.readRecords(text))
            return fail("the archive is damaged");
        return true;
    }

    // --- Entries ---

    bool unpack(const TarEntry& entry) {
        constexpr char gnuSparse = 'S';
        if (entry.type == gnuSparse && entry.hasSparseMap && !passSparseMap()) return false;
        if (entry.type == tarType::folder) return unpackFolder(entry);
        if (!isFile(entry.type)) return skip(entry);
        // Before folders had a type, the end of their name told them.
        return entry.name.ends_with('/') ? unpackFolder(entry) && passData(entry.size)
                                         : unpackFile(entry);
    }

    bool skip(const TarEntry& entry) {
        skipped_.add(entry.name);
        return !hasData(entry.type) || passData(entry.size);
    }

    bool unpackFolder(const TarEntry& entry) {
        std::error_code error;
        if (target_.makeFolder(entry.name, error)) {
            result_.folders++;
            // One that was there keeps what its owner gave it.
            if (target_.hasMade(entry.name))
                folders_.add(entry.name, target_.granted(entry.permissions), entry.modified);
        } else if (isFatal(error)) {
            return failWriting(entry.name, error);
        } else if (error != std::errc::is_a_directory) {
            skipped_.add(entry.name);
        }
        return true;
    }

    bool unpackFile(const TarEntry& entry) {
        std::error_code error;
        const auto file = makeFile(entry.name, error);
        if (!file && isFatal(error)) return failWriting(entry.name, error);
        if (!file) return skip(entry);
        const bool isWritten = passBytes(entry.size, [&](std::span<const std::byte> bytes) {
            return file->write(bytes, error) || failWriting(entry.name, error);
        });
        if (!isWritten || !endFile(entry, *file)) {
            target_.removeFile(entry.name, error);
            return false;
        }
        return passBytes(tarPaddingOf(entry.size));
    }

    std::shared_ptr<FileHandle> makeFile(const std::string& name, std::error_code& error) {
        auto file = target_.makeFile(name, error, ownerAlone);
        const auto slash = name.rfind('/');
        if (file || error != std::errc::no_such_file_or_directory || slash == std::string::npos)
            return file;
        // Not every archive names the folders.
        if (target_.makeFolder(std::string_view(name).substr(0, slash), error))
            file = target_.makeFile(name, error, ownerAlone);
        return file;
    }

    bool endFile(const TarEntry& entry, FileHandle& file) {
        // Without its attributes a file is still worth having.
        std::error_code error;
        file.setAttributes(target_.granted(entry.permissions), entry.modified, error);
        if (!file.close(error)) return failWriting(entry.name, error);
        result_.files++;
        meter_.endFile();
        return true;
    }

    // --- Bytes ---

    /// Empty, with the reason in the result, when there is none.
    std::span<const std::byte> nextBlock() {
        const auto bytes = input_.next();
        if (bytes.size() >= tarBlockBytes && goesOn()) return bytes.first(tarBlockBytes);
        failReading();
        return {};
    }

    static bool nothing(std::span<const std::byte>) { return true; }

    /// Gives the next `size` bytes, piece by piece, to `use`, which may end that with false.
    template <typename Use>
    bool passBytes(std::uintmax_t size, const Use& use) {
        while (size > 0) {
            const auto bytes = input_.next();
            if (bytes.empty() || !goesOn()) return failReading();
            const auto piece =
                bytes.first(static_cast<std::size_t>(std::min<std::uintmax_t>(size, bytes.size())));
            if (!use(piece)) return false;
            input_.consume(piece.size());
            size -= piece.size();
        }
        return true;
    }
    bool passBytes(std::uintmax_t size) { return passBytes(size, nothing); }
    bool passData(std::uintmax_t size) { return passBytes(size) && passBytes(tarPaddingOf(size)); }

    bool passSparseMap() {
        for (bool continues = true; continues;) {
            if (!fits(tarBlockBytes)) return false;
            const auto block = nextBlock();
            if (block.empty()) return false;
            continues = block[gnuSparseMapContinues] != std::byte{0};
            input_.consume(block.size());
        }
        return true;
    }

    // --- Ends ---

    /// The sum of what was compressed stands at its end.
    bool finish() {
        while (input_.isCompressed()) {
            const auto bytes = input_.next();
            if (!goesOn() || !fits(bytes.size())) return false;
            if (bytes.empty()) break;
            input_.consume(bytes.size());
        }
        if (!input_.failure().empty()) return failReading();
        result_.end = DumpResult::End::done;
        return false;
    }

    bool fits(std::uintmax_t size) {
        const auto limit = options_.maximumBytes;
        if (input_.passed() <= limit && size <= limit - input_.passed()) return true;
        return fail("the archive holds more than " + std::to_string(limit) + " bytes");
    }

    bool goesOn() {
        const bool isStopped = meter_.isStopped();
        if (isStopped) result_.end = DumpResult::End::cancelled;
        return !isStopped;
    }

    bool failReading() {
        if (!goesOn()) return false;
        const auto* end = isBegun_ ? "the archive is cut short" : "this is no tar archive";
        return fail(input_.failure().empty() ? end : input_.failure());
    }

    bool failWriting(const std::string& name, const std::error_code& error) {
        return fail("cannot write " + name + ": " + error.message());
    }

    bool fail(const std::string& message) {
        result_.message = message;
        return false;
    }

    const DumpOptions& options_;
    DumpMeter meter_;
    ArchiveInput input_;
    TargetFolder target_;
    PendingFolders folders_;
    ExtendedEntry extended_;
    SkippedNames skipped_;
    DumpResult result_;
    bool isBegun_ = false;
};

}  // namespace

DumpResult unpackDump(const std::string& archive, const std::string& target,
                      const DumpOptions& options) {
    DumpResult result;
    const auto file = FileHandle::forReadingAtPath(archive);
    // A pipe or a device might never end.
    if (!file || !file->isPlain()) {
        result.message = "there is no archive " + archive + ", or it cannot be read";
        return result;
    }
    std::error_code error;
    auto folder = TargetFolder::create(target, error);
    if (folder) return DumpReader(file, std::move(*folder), options).run();
    result.message = "cannot write " + target + ": " + error.message();
    return result;
}

}  // namespace supportsdk
