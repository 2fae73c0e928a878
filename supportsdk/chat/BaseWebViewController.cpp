#include "supportsdk/chat/BaseWebViewController.h"

namespace supportsdk {

BaseWebViewController::BaseWebViewController(const Platform& platform,
                                             const std::string& screenTitle,
                                             const std::string& backLabel, std::string url)
    : initialUrl(std::move(url)),
      presenter_(platform.presenter),
      backLabel_(platform.localizer->localized(backLabel)) {
    title = platform.localizer->localized(screenTitle);
}

void BaseWebViewController::viewDidLoad() {
    leftBarButtons = {{backLabel_, [this] {
                           if (const auto presenter = presenter_.lock()) presenter->dismiss(*this);
                       }}};
}

}  // namespace supportsdk
