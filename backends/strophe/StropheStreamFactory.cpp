#include "backends/strophe/StropheStreamFactory.h"

#include <utility>

namespace supportsdk {

StropheStreamFactory::StropheStreamFactory(StropheOptions options)
    : options_(std::make_shared<const StropheOptions>(std::move(options))) {}

std::unique_ptr<XmppStream> StropheStreamFactory::makeStream() {
    lowDescriptor_->reserve();
    return std::make_unique<StropheStream>(options_, lowDescriptor_);
}

}  // namespace supportsdk
