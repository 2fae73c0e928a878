#include "supportsdk/chat/BaseWebViewController.h"

namespace supportsdk {

BaseWebViewController::BaseWebViewController(PlatformPtr platform, const std::string& screenTitle,
                                             const std::string& backLabel, std::string url)
    : initialUrl(std::move(url)), platform_(std::move(platform)), backLabel_(backLabel) {
    title = platform_->localizer->localized(screenTitle);
}

void BaseWebViewController::viewDidLoad() {
    leftBarButtons = {{platform_->localizer->localized(backLabel_),
                       [this] { platform_->presenter->dismiss(*this); }}};
}

}  // namespace supportsdk
