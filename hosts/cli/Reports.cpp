#include "hosts/cli/Reports.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>

namespace supportsdk::host {

void Reports::write(const std::string& is, const Json& fields) {
    if (isClosed_) return;
    using std::chrono::milliseconds;
    const auto age = std::chrono::steady_clock::now() - start_;
    nlohmann::ordered_json report;
    report["is"] = is;
    report["at"] = std::chrono::duration_cast<milliseconds>(age).count();
    for (const auto& [key, value] : fields.items()) report[key] = value;

    const auto line = report.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
    for (std::string_view rest = line; !rest.empty();) {
        const auto written = ::write(descriptor_, rest.data(), rest.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0 && errno == EAGAIN) {
            pollfd room{descriptor_, POLLOUT, 0};
            ::poll(&room, 1, -1);
            continue;
        }
        if (written < 0) {
            isClosed_ = true;
            return;
        }
        rest.remove_prefix(static_cast<std::size_t>(written));
    }
}

}  // namespace supportsdk::host
