#include "supportsdk/proactive/DumpUpload.h"

#include <algorithm>
#include <new>
#include <string_view>
#include <utility>

#include "supportsdk/core/Ciphers.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk {

namespace {

constexpr std::size_t lineBytes = 48;
constexpr std::size_t lineCharacters = 64;
/// A line feed within a JSON string.
constexpr std::string_view lineEnd = "\\n";
/// Whole lines, so that pieces need not know of each other.
constexpr std::size_t pieceBytes = lineBytes * 4096;

void append(Bytes& json, std::string_view text) {
    const auto* first = reinterpret_cast<const std::byte*>(text.data());
    json.insert(json.end(), first, first + text.size());
}

void appendLines(Bytes& json, std::span<const std::byte> piece) {
    const auto encoded = base64Encode(piece);
    std::string_view rest = encoded;
    while (!rest.empty()) {
        const auto line = rest.substr(0, lineCharacters);
        append(json, line);
        if (line.size() == lineCharacters) append(json, lineEnd);
        rest.remove_prefix(line.size());
    }
}

/// Up to where the encoded file begins.
Bytes beginning(const Json& owner, std::uintmax_t length) {
    auto head = dumpJson(owner);
    head.back() = owner.empty() ? ' ' : ',';
    head += "\"file_data\":\"";
    Bytes json;
    const auto lines = static_cast<std::size_t>(length) / lineBytes + 1;
    json.reserve(head.size() + lines * (lineCharacters + lineEnd.size()) + lineEnd.size());
    append(json, head);
    return json;
}

DumpBody failed(std::string problem) {
    return {{}, std::move(problem)};
}

std::uintmax_t lengthOfRest(const FileHandle& file) {
    const auto size = file.size();
    return size - std::min(size, file.place());
}

}  // namespace

DumpBody dumpUploadBody(const Json& owner, FileHandle& file,
                        const std::function<bool()>& isWanted) try {
    const auto tooLong = [] { return failed("The file is too long to be uploaded."); };
    if (!file.isPlain()) return failed("The file is not a plain file.");
    const auto length = lengthOfRest(file);
    if (length > maximumDumpBytes) return tooLong();
    auto json = beginning(owner, length);
    Bytes piece(pieceBytes);
    std::size_t total = 0;
    while (isWanted()) {
        std::error_code error;
        const auto count = file.read(piece, error);
        if (error) return failed("The file cannot be read.");
        // It may grow while it is read.
        if ((total += count) > maximumDumpBytes) return tooLong();
        appendLines(json, std::span(piece).first(count));
        if (count < piece.size()) {
            append(json, "\"}");
            return {std::move(json), ""};
        }
    }
    return failed("The upload is not wanted any more.");
} catch (const std::bad_alloc&) {
    return failed("There is not enough memory for the file.");
}

}  // namespace supportsdk
