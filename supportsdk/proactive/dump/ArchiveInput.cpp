#include "supportsdk/proactive/dump/ArchiveInput.h"

#include <algorithm>
#include <utility>

#include "supportsdk/proactive/GzipData.h"

namespace supportsdk {

namespace {

constexpr std::size_t bufferBytes = std::size_t{256} * 1024;

}  // namespace

ArchiveInput::ArchiveInput(std::shared_ptr<FileHandle> file, DumpMeter& meter)
    : file_(std::move(file)), meter_(meter), input_(bufferBytes) {
    meter_.setTotal(file_->size());
    if (!readMore() || !isGzippedData(read_)) return;
    output_.resize(bufferBytes);
    beginStream();
}

std::span<const std::byte> ArchiveInput::next() {
    if (ready_.empty() && !isAtEnd_) refill();
    return ready_;
}

void ArchiveInput::consume(std::size_t bytes) {
    ready_ = ready_.subspan(bytes);
    passed_ += bytes;
}

void ArchiveInput::refill() {
    if (isCompressed())
        inflate();
    else if (!read_.empty() || readMore())
        ready_ = std::exchange(read_, {});
    isAtEnd_ = isAtEnd_ || ready_.empty();
}

void ArchiveInput::inflate() {
    std::span<std::byte> room = output_;
    while (!room.empty() && !isAtEnd_) {
        if (read_.empty() && !readMore()) {
            // What came before is the caller's still.
            if (isInStream_ && failure_.empty()) fail("the archive is cut short");
            break;
        }
        if (!isInStream_ && !beginStream()) break;
        const auto state = inflating_->step(read_, room, ZStream::Flush::none);
        if (state == ZStream::State::failed) fail("the archive is damaged");
        if (state == ZStream::State::ended) isInStream_ = false;
    }
    ready_ = std::span(output_).first(output_.size() - room.size());
    meter_.advance(ready_.size(), taken_);
}

/// False when what comes is no gzip.
bool ArchiveInput::beginStream() {
    // The two bytes that gzip begins with may have come apart.
    if (read_.size() < 2) readMore();
    if (!isGzippedData(read_)) {
        isAtEnd_ = true;
        return false;
    }
    inflating_ = ZStream::inflating(ZFormat::gzip);
    if (!inflating_) fail("there is no memory");
    isInStream_ = inflating_.has_value();
    return isInStream_;
}

/// Whether there is more of the file, which then follows what was left of it.
bool ArchiveInput::readMore() {
    if (meter_.isStopped()) isAtEnd_ = true;
    if (isAtEnd_) return false;
    std::ranges::copy(read_, input_.begin());
    std::error_code error;
    const auto rest = std::span(input_).subspan(read_.size());
    const auto count = file_->read(rest, error);
    if (error) fail("the archive cannot be read: " + error.message());
    read_ = std::span(input_).first(read_.size() + count);
    taken_ += count;
    meter_.advance(count, taken_);
    return count > 0;
}

void ArchiveInput::fail(const std::string& message) {
    failure_ = message;
    isAtEnd_ = true;
}

}  // namespace supportsdk
