#include "hosts/cli/Reports.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>

namespace supportsdk::host {

namespace {

constexpr auto replaceDamage = Json::error_handler_t::replace;

}  // namespace

void Reports::write(const std::string& is, const Json& fields) {
    if (isClosed_) return;
    using std::chrono::milliseconds;
    const auto age = std::chrono::steady_clock::now() - start_;
    auto line = "{\"is\":" + Json(is).dump() +
                ",\"at\":" + std::to_string(std::chrono::duration_cast<milliseconds>(age).count());
    // The state of a long chat has megabytes: it is written out once and not copied before.
    const auto rest = fields.empty() ? "{}" : fields.dump(-1, ' ', false, replaceDamage);
    line += rest.size() > 2 ? "," : "";
    line.append(rest, 1).append("\n");
    send(line);
}

void Reports::send(std::string_view rest) {
    while (!rest.empty()) {
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
