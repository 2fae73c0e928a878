#include "hosts/cli/HostParts.h"

#include <array>

namespace supportsdk::host {

bool HostUrlOpener::canOpen(const std::string& url) {
    constexpr std::array<std::string_view, 4> schemes = {"http://", "https://", "mailto:", "tel:"};
    if (url.find_first_of(" \t\r\n") != std::string::npos) return false;
    for (const auto scheme : schemes) {
        if (url.starts_with(scheme)) return true;
    }
    return false;
}

void HostUrlOpener::open(const std::string& url, std::function<void(bool worked)> completion) {
    const bool worked = canOpen(url);
    reports_->write("open", {{"url", url}, {"worked", worked}});
    queue_->post([completion = std::move(completion), worked] { completion(worked); });
}

}  // namespace supportsdk::host
