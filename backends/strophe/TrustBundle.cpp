#include "backends/strophe/TrustBundle.h"

#include <sys/mman.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

namespace supportsdk {

TrustBundle::TrustBundle(const std::vector<std::filesystem::path>& files) {
    std::ostringstream all;
    for (const auto& file : files) {
        std::ifstream in(file, std::ios::binary);
        std::ostringstream one;
        if (in && one << in.rdbuf()) all << one.str() << '\n';
    }
    const std::string text = std::move(all).str();
    if (text.empty()) return;
    descriptor_ = memfd_create("authorities", MFD_CLOEXEC);
    if (descriptor_ < 0) return;
    std::string_view rest = text;
    while (!rest.empty()) {
        const auto written = write(descriptor_, rest.data(), rest.size());
        if (written <= 0) return;
        rest.remove_prefix(static_cast<std::size_t>(written));
    }
}

TrustBundle::~TrustBundle() {
    if (descriptor_ >= 0) close(descriptor_);
}

std::string TrustBundle::path() const {
    return descriptor_ < 0 ? std::string() : "/proc/self/fd/" + std::to_string(descriptor_);
}

}  // namespace supportsdk
