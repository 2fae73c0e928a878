#include "supportsdk/proactive/DCTar.h"

#include <string_view>

#include "supportsdk/proactive/files/FilePaths.h"

namespace supportsdk {

namespace {

constexpr int notFound = -2;
constexpr int notTarred = -3;
constexpr int notRestored = -3;
constexpr std::string_view tarEnding = ".tar";
constexpr std::string_view gzipEnding = ".gz";

std::string withoutEnding(const std::string& path, std::string_view ending) {
    return path.ends_with(ending) ? path.substr(0, path.size() - ending.size()) : path;
}

bool fail(const char* detail, int code, ErrorSlot error) {
    if (error) *error = DCTar::errorWithDetail(detail, code);
    return false;
}

bool gzipAndRemove(const std::string& path, const std::string& target) {
    const auto source = FileHandle::forReadingAtPath(path);
    if (!source || !DCTar::fileDeflate(*source, true, target)) return false;
    removeFile(path);
    return true;
}

bool gunzip(const std::string& path, const std::string& target) {
    const auto source = FileHandle::forReadingAtPath(path);
    if (!source) return false;
    removeFile(target);
    return DCTar::fileInflate(*source, true, target);
}

}  // namespace

SupportError DCTar::errorWithDetail(const std::string& detail, int code) {
    return {errorDomain, code, detail, std::nullopt};
}

bool DCTar::compressFileAtPath(const std::string& path, const std::string& target,
                               ErrorSlot error) {
    if (!fileExists(path)) return fail("file not found", notFound, error);

    const auto tarPath = withoutEnding(target, gzipEnding);
    if (tarPath.ends_with(tarEnding) && !tarFileAtPath(path, tarPath, error)) {
        fail("unable to tar the file", notTarred, error);
        return true;
    }
    return tarPath == target || gzipAndRemove(tarPath, target);
}

bool DCTar::decompressFileAtPath(const std::string& path, const std::string& target,
                                 ErrorSlot error) {
    if (!fileExists(path)) return fail("file not found", notFound, error);

    auto current = path;
    const auto shortened = withoutEnding(path, gzipEnding);
    if (shortened != path && gunzip(path, shortened)) current = shortened;
    if (!current.ends_with(tarEnding)) return true;

    const bool isRead = untarFileAtPath(current, target, error);
    // What could not even be opened is not lost for that.
    if (isRead) removeFile(current);
    return isRead;
}

bool DCTar::decompressData(std::span<const std::byte> data, const std::string& target,
                           ErrorSlot error) {
    const auto archive = gzipDecompress(data);
    return archive && untarData(*archive, target, error);
}

bool DCTar::gzipDecompress(const std::string& path, const std::string& target, ErrorSlot error) {
    if (!fileExists(path)) return fail("tar file not found", notFound, error);
    const auto source = FileHandle::forReadingAtPath(path);
    if (source && fileInflate(*source, true, target)) return true;
    return fail("gzip failed to decompress the file", notRestored, error);
}

}  // namespace supportsdk
