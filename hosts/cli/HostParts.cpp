#include "hosts/cli/HostParts.h"

#include <array>

#include "hosts/cli/Looks.h"

namespace supportsdk::host {

namespace {

Json colorFields(const std::optional<Color>& color) {
    Json fields = Json::object();
    putColor(fields, "color", color);
    return fields;
}

}  // namespace

void HostGlobalAppearance::setNavigationBarTranslucent(bool translucent) {
    set("navigationBarTranslucent", {{"on", translucent}});
}

void HostGlobalAppearance::setNavigationBarTintColor(const std::optional<Color>& color) {
    set("navigationBarTint", colorFields(color));
}

void HostGlobalAppearance::setNavigationBarBarTintColor(const std::optional<Color>& color) {
    set("navigationBarBarTint", colorFields(color));
}

void HostGlobalAppearance::setControlTintColor(const std::optional<Color>& color) {
    set("controlTint", colorFields(color));
}

void HostGlobalAppearance::set(const char* what, Json value) {
    value["what"] = what;
    if (std::exchange(values_[what], value) != value) reports_->write("appearance", value);
}

std::optional<Color> HostTraits::systemColor(const std::string& name) const {
    constexpr Color black{0, 0, 0};
    constexpr Color white{255, 255, 255};
    if (name == "labelColor") return isDark_ ? white : black;
    if (name == "systemBackgroundColor") return isDark_ ? black : white;
    return std::nullopt;
}

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
