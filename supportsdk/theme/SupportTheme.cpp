#include "supportsdk/core/Support.h"
#include "supportsdk/theme/Appearance.h"

namespace supportsdk {

void Support::createAppearance() {
    appearance = std::make_shared<Appearance>(platform);
    appearance->configure();
}

void Support::applyTheme(const ChannelTitles& titles, const Json& settings) {
    appearance->titles = titles;
    appearance->configureWithSettings(settings);
}

}  // namespace supportsdk
