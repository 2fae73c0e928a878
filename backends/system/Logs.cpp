#include "backends/system/Logs.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace supportsdk {

namespace {

/// In one call, so that lines of several threads do not mix.
void writeLine(int descriptor, std::string_view line) {
    std::string text(line);
    const auto control = [](unsigned char byte) {
        return (byte < 0x20 && byte != '\t') || byte == 0x7F;
    };
    std::replace_if(text.begin(), text.end(), control, '?');
    text += '\n';
    for (std::string_view rest = text; !rest.empty();) {
        const auto written = ::write(descriptor, rest.data(), rest.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return;
        rest.remove_prefix(static_cast<std::size_t>(written));
    }
}

}  // namespace

void StderrLog::write(std::string_view line) {
    writeLine(STDERR_FILENO, line);
}

FileLog::~FileLog() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

void FileLog::write(std::string_view line) {
    std::call_once(opened_, [this] {
        descriptor_ = ::open(file_.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    });
    if (descriptor_ >= 0) writeLine(descriptor_, line);
}

}  // namespace supportsdk
