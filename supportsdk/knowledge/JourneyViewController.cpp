#include "supportsdk/knowledge/JourneyViewController.h"

namespace supportsdk {

void JourneyViewController::finish() {
    isPushed = presentingController.expired();
    BaseWebViewController::finish();
}

}  // namespace supportsdk
