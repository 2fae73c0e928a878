#include "supportsdk/proactive/dump/GzipOutput.h"

namespace supportsdk {

namespace {

constexpr std::size_t bufferBytes = std::size_t{256} * 1024;

}  // namespace

std::unique_ptr<GzipOutput> GzipOutput::create(FileHandle& file, int level) {
    auto stream = ZStream::deflating(ZFormat::gzip, level);
    if (!stream) return nullptr;
    return std::unique_ptr<GzipOutput>(new GzipOutput(file, std::move(*stream)));
}

GzipOutput::GzipOutput(FileHandle& file, ZStream stream)
    : file_(file), stream_(std::move(stream)), buffer_(bufferBytes), room_(buffer_) {}

bool GzipOutput::write(std::span<const std::byte> data, std::error_code& error) {
    return push(data, ZStream::Flush::none, error);
}

bool GzipOutput::finish(std::error_code& error) {
    return push({}, ZStream::Flush::finish, error) && writeBuffer(error);
}

bool GzipOutput::push(std::span<const std::byte> data, ZStream::Flush flush,
                      std::error_code& error) {
    error.clear();
    while (true) {
        const auto state = stream_.step(data, room_, flush);
        if (state == ZStream::State::failed) {
            error = std::make_error_code(std::errc::state_not_recoverable);
            return false;
        }
        if (state == ZStream::State::ended || !room_.empty()) return true;
        if (!writeBuffer(error)) return false;
    }
}

bool GzipOutput::writeBuffer(std::error_code& error) {
    const auto full = std::span(buffer_).first(buffer_.size() - room_.size());
    room_ = buffer_;
    return file_.write(full, error);
}

}  // namespace supportsdk
