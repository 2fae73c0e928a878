#include <fcntl.h>

#include <algorithm>

#include "supportsdk/proactive/DCTar.h"
#include "supportsdk/proactive/files/FileAttributes.h"
#include "supportsdk/proactive/files/FilePaths.h"
#include "supportsdk/proactive/files/FolderWalk.h"
#include "supportsdk/proactive/tar/TarHeader.h"

namespace supportsdk {

namespace {

constexpr std::size_t chunkBytes = std::size_t{64} * 1024;
constexpr std::size_t paddingBytes = 1024;
constexpr std::size_t endBytes = 1024;

std::string pathIn(const std::string& folder, const std::string& path) {
    return folder.empty() ? path : folder + "/" + path;
}

TarBlock headerFor(const std::string& path, const FileAttributes& attributes, bool isDirectory) {
    return makeTarHeader(isAscii(path) ? fitTarName(path) : TarName{}, attributes,
                         isDirectory ? tarType::folder : tarType::file);
}

std::shared_ptr<FileHandle> openForReading(const FolderEntry& entry) {
    const int file = ::openat(entry.folder, entry.name, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    return file < 0 ? nullptr : std::make_shared<FileHandle>(file);
}

/// Writes entries through one buffer. A file's header goes out together with its first bytes.
class EntryWriter {
 public:
    enum class Outcome { written, leftOut, targetFailed };

    explicit EntryWriter(FileHandle& target) : target_(target) {}

    /// Packs it as what it is. Pipes and devices would block or never end.
    Outcome write(const FolderEntry& entry) {
        const auto attributes = attributes_.readAt(entry.folder, entry.name);
        if (!attributes || attributes->kind == FileAttributes::Kind::other) return Outcome::leftOut;
        if (attributes->kind == FileAttributes::Kind::folder) {
            return writeFolder(entry.path, *attributes);
        }
        return writeFile(entry.path, *attributes, openForReading(entry));
    }

    Outcome write(const std::string& path, const std::string& folder, bool isDirectory) {
        const auto attributes = attributes_.read(pathIn(folder, path));
        if (!attributes) return Outcome::leftOut;
        if (isDirectory) return writeFolder(path, *attributes);
        // A header without its data would spoil the rest of the archive.
        if (attributes->kind != FileAttributes::Kind::plain) return Outcome::leftOut;
        return writeFile(path, *attributes, FileHandle::forReadingAtPath(pathIn(folder, path)));
    }

    bool writeHeader(const std::string& path, const std::string& folder, bool isDirectory) {
        const auto attributes = attributes_.read(pathIn(folder, path));
        std::error_code ignored;
        return attributes && target_.write(headerFor(path, *attributes, isDirectory), ignored);
    }

    bool writeData(FileHandle& source, std::uintmax_t length) {
        return writeData(source, length, 0);
    }

 private:
    Outcome writeFolder(const std::string& path, const FileAttributes& attributes) {
        std::error_code ignored;
        return outcome(target_.write(headerFor(path + "/", attributes, true), ignored));
    }

    Outcome writeFile(const std::string& path, const FileAttributes& attributes,
                      const std::shared_ptr<FileHandle>& source) {
        if (!source) return Outcome::leftOut;
        std::ranges::copy(headerFor(path, attributes, false), buffer_.begin());
        return outcome(writeData(*source, attributes.size, tarBlockBytes));
    }

    /// `pending` bytes at the beginning of the buffer go first. What comes to a growing file
    /// meanwhile is not its entry's; one that became shorter ends where it ends.
    bool writeData(FileHandle& source, std::uintmax_t length, std::size_t pending) {
        for (bool isEnd = false; !isEnd; pending = 0) {
            const auto wanted = std::min<std::uintmax_t>(length, chunkBytes);
            std::error_code ignored;
            const auto got = source.read(std::span(buffer_).subspan(pending, wanted), ignored);
            length -= got;
            isEnd = got < wanted || length == 0;
            auto end = pending + got;
            if (isEnd && got % tarBlockBytes != 0) end += pad(end);
            if (!target_.write(std::span(buffer_).first(end), ignored)) return false;
        }
        return true;
    }

    std::size_t pad(std::size_t from) {
        std::ranges::fill(std::span(buffer_).subspan(from, paddingBytes), std::byte{0});
        return paddingBytes;
    }

    static Outcome outcome(bool isWritten) {
        return isWritten ? Outcome::written : Outcome::targetFailed;
    }

    FileHandle& target_;
    FileAttributesReader attributes_;
    Bytes buffer_ = Bytes(tarBlockBytes + chunkBytes + paddingBytes);
};

bool writeArchive(const std::string& folder, FileHandle& target) {
    EntryWriter writer(target);
    const auto end = walkFolder(folder, [&](const FolderEntry& entry) {
        const bool goesOn = writer.write(entry) != EntryWriter::Outcome::targetFailed;
        return goesOn ? Walk::goesOn : Walk::ends;
    });
    std::error_code ignored;
    return end == Walk::goesOn && target.write(Bytes(endBytes), ignored) && target.close(ignored);
}

}  // namespace

bool DCTar::tarFileAtPath(const std::string& path, const std::string& target, ErrorSlot error) {
    if (!fileExists(path)) {
        if (error) *error = errorWithDetail("tar file not found", -2);
        return false;
    }
    // Replacing the target would destroy the source.
    if (isSameFile(path, target)) return false;

    removeFile(target);
    const auto archive = FileHandle::forWritingAtPath(target);
    if (!archive) return false;
    if (writeArchive(path, *archive)) return true;
    // Part of an archive would go on filling the disk.
    removeFile(target);
    return false;
}

bool DCTar::chunkedWriteDataFromPath(const std::string& path, const std::string& folder,
                                     bool isDirectory, FileHandle& target) {
    return EntryWriter(target).write(path, folder, isDirectory) == EntryWriter::Outcome::written;
}

bool DCTar::writeHeaderForPath(const std::string& path, const std::string& basePath,
                               bool isDirectory, FileHandle& target) {
    return EntryWriter(target).writeHeader(path, basePath, isDirectory);
}

bool DCTar::chunkedWriteDataFromPath(const std::string& path, FileHandle& target) {
    const auto source = FileHandle::forReadingAtPath(path);
    return source && source->isPlain() && EntryWriter(target).writeData(*source, source->size());
}

void DCTar::writeString(const std::string& text, std::span<std::byte> field, std::size_t length) {
    writeTarText(field.first(std::min(length, field.size())), text);
}

}  // namespace supportsdk
