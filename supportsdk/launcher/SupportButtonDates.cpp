#include "supportsdk/core/DateFormat.h"
#include "supportsdk/launcher/SupportButton.h"

namespace supportsdk {

std::string SupportButton::fullDateString() const {
    return dateWithFormat("yyyy-MM-dd'T'HH:mm:ss.SSS'Z'");
}

std::string SupportButton::dateWithFormat(const std::string& format) const {
    return formattedDate(*platform_->clock, platform_->clock->now(), format);
}

}  // namespace supportsdk
