#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "supportsdk/proactive/Dump.h"
#include "supportsdk/proactive/dump/DumpMeter.h"
#include "supportsdk/proactive/dump/DumpSources.h"
#include "supportsdk/proactive/dump/GzipOutput.h"
#include "supportsdk/proactive/dump/SkippedNames.h"
#include "supportsdk/proactive/files/Descriptor.h"
#include "supportsdk/proactive/files/FileAttributes.h"
#include "supportsdk/proactive/files/FolderWalk.h"
#include "supportsdk/proactive/files/NewFile.h"
#include "supportsdk/proactive/files/TargetFolder.h"
#include "supportsdk/proactive/tar/PaxHeader.h"
#include "supportsdk/proactive/tar/TarHeader.h"

namespace supportsdk {

namespace {

constexpr std::size_t bufferBytes = std::size_t{256} * 1024;
constexpr int sourceFlags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
using Kind = FileAttributes::Kind;

/// A name in an open folder, and its path in the archive.
struct Place {
    int folder;
    const char* name;
    std::string path;
};

class DumpWriter {
 public:
    DumpWriter(std::string target, const DumpOptions& options)
        : target_(std::move(target)), options_(options), meter_(options), buffer_(bufferBytes) {}

    DumpResult run(const std::vector<std::string>& paths) {
        const auto sources = dumpSources(paths, skipped_);
        const bool isPacked = !sources.empty() && open() && measure(sources) && pack(sources);
        if (sources.empty() || (isPacked && result_.files + result_.folders == 0))
            fail("there is nothing to pack");
        else if (isPacked)
            finish();
        result_.skipped = skipped_.take();
        return std::move(result_);
    }

 private:
    bool open() {
        std::error_code error;
        file_ = NewFile::create(target_, error);
        if (!file_) return failWriting(error);
        output_ = GzipOutput::create(file_->handle(), options_.compressionLevel);
        return output_ || fail("there is no such compression level, or no memory");
    }

    // --- Measuring ---

    /// Adds up what the files hold.
    bool measure(const std::vector<DumpSource>& sources) {
        std::uintmax_t total = 0;
        for (const auto& source : sources) {
            total += plainSize(AT_FDCWD, source.path.c_str());
            walkFolder(source.path, [&](const FolderEntry& entry) {
                if (isTooDeep(entry)) return Walk::passesBy;
                if (!entry.isFolder) total += plainSize(entry.folder, entry.name);
                return meter_.isStopped() ? Walk::ends : Walk::goesOn;
            });
        }
        meter_.setTotal(total);
        return goesOn();
    }

    [[nodiscard]] std::uintmax_t plainSize(int folder, const char* name) const {
        struct stat status {};
        const bool isPacked = fstatat(folder, name, &status, 0) == 0 && S_ISREG(status.st_mode) &&
                              !file_->is(FileIdentity::of(status));
        return isPacked ? static_cast<std::uintmax_t>(status.st_size) : 0;
    }

    // --- Packing ---

    bool pack(const std::vector<DumpSource>& sources) {
        return std::ranges::all_of(sources, [&](const DumpSource& source) {
            return packEntry({AT_FDCWD, source.path.c_str(), source.name}, true) &&
                   packContent(source);
        });
    }

    bool packContent(const DumpSource& source) {
        struct stat status {};
        if (stat(source.path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) return true;
        const auto pathOf = [&](const std::string& path) {
            return path.empty() ? source.name : source.name + "/" + path;
        };
        const auto walk = walkFolder(
            source.path,
            [&](const FolderEntry& entry) {
                const Place place{entry.folder, entry.name, pathOf(entry.path)};
                if (isTooDeep(entry)) return passBy(place);
                return packEntry(place, entry.isFolder) ? Walk::goesOn : Walk::ends;
            },
            [&](const std::string& path) { skipped_.add(pathOf(path)); });
        return walk == Walk::goesOn;
    }

    /// What unpackDump() would not take. The source's own name is a level, too.
    static bool isTooDeep(const FolderEntry& entry) {
        return entry.level >= TargetFolder::maximumLevels;
    }

    Walk passBy(const Place& place) {
        skipped_.add(place.path);
        return goesOn() ? Walk::passesBy : Walk::ends;
    }

    /// False ends the packing; what cannot be packed does not.
    bool packEntry(const Place& place, bool mayBeFolder) {
        if (!goesOn()) return false;
        // Opening a device may do something to it.
        const auto found = attributes_.readAt(place.folder, place.name);
        if (found && found->kind == Kind::folder && mayBeFolder) return packFolder(place, *found);
        if (found && found->kind == Kind::plain) return packFile(place);
        skipped_.add(place.path);
        return true;
    }

    bool packFolder(const Place& place, const FileAttributes& attributes) {
        meter_.begin(place.path);
        result_.folders++;
        return write(makePaxHeader(place.path + "/", attributes, tarType::folder));
    }

    bool packFile(const Place& place) {
        const int descriptor = openat(place.folder, place.name, sourceFlags);
        FileHandle source(descriptor);
        if (descriptor >= 0 && file_->is(FileIdentity::of(descriptor))) return true;
        const auto attributes = attributes_.readOpen(descriptor);
        if (!attributes || attributes->kind != Kind::plain) {
            skipped_.add(place.path);
            return true;
        }
        if (attributes->size == 0) return packUnsized(place, source, *attributes);
        return packAs(place, *attributes,
                      [&] { return packData(place, source, attributes->size); });
    }

    /// What the system makes up as it is read, below /proc for one, has no length beforehand. It is
    /// packed as far as the buffer holds it.
    bool packUnsized(const Place& place, FileHandle& source, FileAttributes attributes) {
        std::error_code error;
        attributes.size = source.read(buffer_, error);
        if (error || attributes.size == buffer_.size()) skipped_.add(place.path);
        return packAs(place, attributes,
                      [&] { return write(std::span(buffer_).first(attributes.size)); });
    }

    template <typename WriteContent>
    bool packAs(const Place& place, const FileAttributes& attributes,
                const WriteContent& writeContent) {
        meter_.begin(place.path);
        const bool isPacked = write(makePaxHeader(place.path, attributes, tarType::file)) &&
                              writeContent() &&
                              write(std::span(emptyBlock()).first(tarPaddingOf(attributes.size)));
        result_.files += isPacked ? 1 : 0;
        meter_.endFile();
        return isPacked;
    }

    /// As many bytes as the header has announced, whatever became of the file since.
    bool packData(const Place& place, FileHandle& source, std::uintmax_t size) {
        bool isShort = false;
        for (std::uintmax_t left = size; left > 0;) {
            if (!goesOn()) return false;
            const auto piece = std::span(buffer_).first(
                static_cast<std::size_t>(std::min<std::uintmax_t>(left, buffer_.size())));
            std::error_code error;
            const auto count = isShort ? 0 : source.read(piece, error);
            isShort = count < piece.size();
            std::ranges::fill(piece.subspan(count), std::byte{0});
            if (!write(piece)) return false;
            left -= piece.size();
            done_ += piece.size();
            meter_.advance(piece.size(), done_);
        }
        if (isShort) skipped_.add(place.path);
        return true;
    }

    bool finish() {
        std::error_code error;
        if (!write(emptyBlock()) || !write(emptyBlock()) || !goesOn()) return false;
        meter_.report();
        if (!output_->finish(error) || !file_->commit(error)) return failWriting(error);
        result_.end = DumpResult::End::done;
        return true;
    }

    static const TarBlock& emptyBlock() {
        static constexpr TarBlock block{};
        return block;
    }

    // --- Ends ---

    bool write(std::span<const std::byte> data) {
        std::error_code error;
        return output_->write(data, error) || failWriting(error);
    }

    bool goesOn() {
        const bool isStopped = meter_.isStopped();
        if (isStopped) result_.end = DumpResult::End::cancelled;
        return !isStopped;
    }

    bool failWriting(const std::error_code& error) {
        return fail("cannot write " + target_ + ": " + error.message());
    }

    bool fail(const std::string& message) {
        result_.message = message;
        return false;
    }

    const std::string target_;
    const DumpOptions& options_;
    DumpMeter meter_;
    std::unique_ptr<NewFile> file_;
    std::unique_ptr<GzipOutput> output_;
    FileAttributesReader attributes_;
    std::vector<std::byte> buffer_;
    std::uintmax_t done_ = 0;
    SkippedNames skipped_;
    DumpResult result_;
};

}  // namespace

DumpResult packDump(const std::vector<std::string>& sources, const std::string& target,
                    const DumpOptions& options) {
    return DumpWriter(target, options).run(sources);
}

}  // namespace supportsdk
