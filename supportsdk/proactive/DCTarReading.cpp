#include <algorithm>
#include <array>

#include "supportsdk/proactive/DCTar.h"
#include "supportsdk/proactive/files/FilePaths.h"
#include "supportsdk/proactive/files/TargetFolder.h"
#include "supportsdk/proactive/tar/TarHeader.h"

namespace supportsdk {

namespace {

constexpr std::size_t windowBytes = std::size_t{64} * 1024;

using Memory = std::span<const std::byte>;

Memory part(Memory data, std::uintmax_t location, std::uintmax_t length) {
    if (location >= data.size()) return {};
    data = data.subspan(location);
    return data.first(std::min<std::uintmax_t>(length, data.size()));
}

FileHandle* fileOf(const TarObject& object) {
    auto* const* file = std::get_if<FileHandle*>(&object);
    return file ? *file : nullptr;
}

std::uintmax_t sizeOf(const TarObject& object) {
    if (const auto* memory = std::get_if<Memory>(&object)) return memory->size();
    const auto* file = fileOf(object);
    return file ? file->size() : 0;
}

/// Hands out an object piece by piece; a file through a window that moves along it.
class Source {
 public:
    explicit Source(const TarObject& object) : object_(object) {
        if (fileOf(object)) buffer_.resize(windowBytes);
    }

    /// What begins at `location`: at least `least` bytes (of those in the object), at most `most`.
    /// Good until the next call.
    Memory read(std::uintmax_t location, std::size_t least, std::uintmax_t most) {
        if (const auto* memory = std::get_if<Memory>(&object_))
            return part(*memory, location, most);
        auto* const file = fileOf(object_);
        if (!file) return {};
        if (location < start_ || part(window_, location - start_, least).size() < least) {
            std::error_code ignored;
            window_ = Memory(buffer_).first(file->readAt(location, buffer_, ignored));
            start_ = location;
        }
        return part(window_, location - start_, most);
    }

 private:
    const TarObject& object_;
    Bytes buffer_;
    Memory window_;
    std::uintmax_t start_ = 0;
};

bool copy(Source& source, std::uintmax_t location, std::uintmax_t length, FileHandle& target) {
    std::error_code ignored;
    while (length > 0) {
        const auto piece = source.read(location, 1, length);
        if (piece.empty() || !target.write(piece, ignored)) return false;
        location += piece.size();
        length -= piece.size();
    }
    return target.close(ignored);
}

/// As strtoll() reads it: blanks, a sign, digits, and then whatever may follow. 12 digits fit.
std::int64_t octalNumber(std::string_view text) {
    const auto start = text.find_first_not_of(" \t\n\v\f\r");
    if (start == std::string_view::npos) return 0;
    text.remove_prefix(start);
    const bool isNegative = text.front() == '-';
    if (isNegative || text.front() == '+') text.remove_prefix(1);
    std::int64_t number = 0;
    for (const char letter : text) {
        if (letter < '0' || letter > '7') break;
        number = number * 8 + (letter - '0');
    }
    return isNegative ? -number : number;
}

class Extraction {
 public:
    Extraction(const TarObject& object, std::uintmax_t size, const std::string& target,
               ErrorSlot error)
        : source_(object), size_(std::min(size, sizeOf(object))), error_(error) {
        folder_ = TargetFolder::create(target, folderError_);
    }

    void run() {
        for (std::uintmax_t offset = 0; offset < size_;) offset += extractEntry(offset);
    }

 private:
    /// Returns how far the next header is.
    std::uintmax_t extractEntry(std::uintmax_t offset) {
        const auto block = source_.read(offset, tarBlockBytes, tarBlockBytes);
        // The rest is not there, or not any more. What is cut off would read as the empty file of
        // that name, and replace it.
        if (block.size() < tarBlockBytes) return size_ - offset;
        const TarObject header = block;
        const auto name = DCTar::nameForObject(header, 0);
        switch (DCTar::typeForObject(header, 0)) {
            case tarType::folder:
                if (std::error_code ignored; folder_) folder_->makeFolder(name, ignored);
                return tarBlockBytes;
            case tarType::file:
            case tarType::oldFile:
                return extractFile(name, offset + tarBlockBytes, DCTar::sizeForObject(header, 0));
            default:
                return tarBlockBytes;
        }
    }

    std::uintmax_t extractFile(const std::string& name, std::uintmax_t location,
                               std::int64_t length) {
        if (length < 0) return tarBlockBytes;
        const auto bytes = static_cast<std::uintmax_t>(length);
        const auto blocks = (bytes + tarBlockBytes - 1) / tarBlockBytes;
        if (bytes == 0 || location + bytes <= size_) {
            const auto file = makeFile(name, bytes == 0 ? error_ : nullptr);
            if (file) copy(source_, location, bytes, *file);
        }
        return tarBlockBytes * (1 + blocks);
    }

    std::shared_ptr<FileHandle> makeFile(const std::string& name, ErrorSlot error) {
        auto reason = folderError_;
        auto file = folder_ ? folder_->makeFile(name, reason) : nullptr;
        if (!file && error) {
            *error = SupportError{reason.category().name(), reason.value(), reason.message(), {}};
        }
        return file;
    }

    Source source_;
    const std::uintmax_t size_;
    const ErrorSlot error_;
    std::error_code folderError_;
    std::optional<TargetFolder> folder_;
};

std::string fieldText(const TarObject& object, std::uintmax_t offset, TarField field) {
    // A place that cannot be counted is one that cannot be read.
    const auto location = offset + field.offset < offset ? UINTMAX_MAX : offset + field.offset;
    const auto bytes =
        DCTar::dataForObject(object, {location, field.length}, location, field.length);
    return bytes && bytes->size() == field.length ? toText(*bytes) : "";
}

}  // namespace

bool DCTar::untarFileAtPath(const std::string& path, const std::string& target, ErrorSlot error) {
    if (!fileExists(path)) {
        if (error) *error = errorWithDetail("tar file not found", -2);
        return false;
    }
    const auto archive = FileHandle::forReadingAtPath(path);
    return archive && untarObject(archive.get(), archive->size(), target, error);
}

bool DCTar::untarData(std::span<const std::byte> data, const std::string& target, ErrorSlot error) {
    return untarObject(data, data.size(), target, error);
}

bool DCTar::untarObject(const TarObject& object, std::uintmax_t size, const std::string& target,
                        ErrorSlot error) {
    Extraction(object, size, target, error).run();
    return true;
}

char DCTar::typeForObject(const TarObject& object, std::uintmax_t offset) {
    const auto text = fieldText(object, offset, tarField::type);
    return text.empty() ? '\0' : text.front();
}

std::string DCTar::nameForObject(const TarObject& object, std::uintmax_t offset) {
    auto text = fieldText(object, offset, tarField::name);
    text.resize(std::min(text.find('\0'), text.size()));
    return isAscii(text) ? text : "";
}

std::int64_t DCTar::sizeForObject(const TarObject& object, std::uintmax_t offset) {
    return octalNumber(fieldText(object, offset, tarField::size));
}

bool DCTar::writeFileDataForObject(const TarObject& object, std::uintmax_t location,
                                   std::uintmax_t length, const std::string& path) {
    const auto* memory = std::get_if<Memory>(&object);
    if (memory ? part(*memory, location, length).size() < length : !fileOf(object)) return false;
    const auto file = FileHandle::forWritingAtPath(path);
    if (!file) return false;
    Source source(object);
    return copy(source, location, length, *file);
}

std::optional<Bytes> DCTar::dataForObject(const TarObject& object, const TarRange& range,
                                          std::uintmax_t location, std::size_t length) {
    if (const auto* memory = std::get_if<Memory>(&object)) {
        const auto bytes = part(*memory, range.location, range.length);
        return Bytes(bytes.begin(), bytes.end());
    }
    auto* const file = fileOf(object);
    if (!file) return std::nullopt;
    // Asking for much of a short file costs no memory.
    const auto size = file->size();
    Bytes bytes(location < size ? std::min<std::uintmax_t>(length, size - location) : 0);
    std::error_code ignored;
    bytes.resize(file->readAt(location, bytes, ignored));
    return bytes;
}

}  // namespace supportsdk
