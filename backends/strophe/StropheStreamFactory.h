#pragma once

#include <memory>

#include "backends/strophe/StropheStream.h"
#include "supportsdk/platform/XmppStream.h"

namespace supportsdk {

/// Makes StropheStreams (RFC 6120 over libstrophe). Opens nothing until the first stream is made.
class StropheStreamFactory final : public XmppStreamFactory {
 public:
    explicit StropheStreamFactory(StropheOptions options);

    [[nodiscard]] std::unique_ptr<XmppStream> makeStream() override;

 private:
    const std::shared_ptr<const StropheOptions> options_;
    const std::shared_ptr<LowDescriptor> lowDescriptor_ = std::make_shared<LowDescriptor>();
};

}  // namespace supportsdk
