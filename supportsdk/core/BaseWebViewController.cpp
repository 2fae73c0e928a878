#include "supportsdk/core/BaseWebViewController.h"

#include <utility>

namespace supportsdk {

BaseWebViewController::BaseWebViewController(const Platform& platform, std::string screenTitle,
                                             std::string backLabel, std::string url)
    : initialUrl(std::move(url)), presenter(platform.presenter), backLabel_(std::move(backLabel)) {
    title = std::move(screenTitle);
}

void BaseWebViewController::viewDidLoad() {
    leftBarButtons = {{backLabel_, [weak = weak_from_this()] {
                           if (const auto self = weak.lock())
                               static_cast<BaseWebViewController&>(*self).finish();
                       }}};
}

void BaseWebViewController::finish() {
    const auto shown = presenter.lock();
    if (!shown) return;
    if (isPushed) {
        shown->pop(*this);
    } else {
        shown->dismiss(*this);
    }
}

}  // namespace supportsdk
