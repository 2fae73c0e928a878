#include "supportsdk/knowledge/KBViewController.h"

#include <utility>

#include "supportsdk/theme/Appearance.h"

namespace supportsdk {

KBViewController::KBViewController(const Platform& platform,
                                   std::shared_ptr<const Appearance> appearance,
                                   std::string screenTitle, std::string url)
    : BaseWebViewController(platform, std::move(screenTitle), platform.localizer->localized("Done"),
                            std::move(url)),
      appearance_(std::move(appearance)) {}

void KBViewController::viewWillAppear() {
    barTintColor = appearance_->linkAndButtonTintColor;
    isNavigationBarHidden = true;
}

void KBViewController::setVisible(bool visible) {
    if (std::exchange(isVisible_, visible) == visible) return;
    if (const auto picture = view.lock()) picture->visibilityDidChange(visible);
}

}  // namespace supportsdk
