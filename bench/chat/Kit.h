#pragma once

#include <cstdint>
#include <memory>

#include "backends/asio/AsioMainQueue.h"
#include "supportsdk/chat/QuorrandChat.h"
#include "tests/support/TemporaryFolder.h"

namespace supportsdk::bench {

/// The chat engine on the real platform and a loop of its own, with three participants.
struct Kit {
    Kit();
    ~Kit();
    Kit(const Kit&) = delete;
    Kit& operator=(const Kit&) = delete;

    /// Connects to a server that plays scriptOf(), and enters its room.
    void enterRoom(std::uint16_t port);
    /// Runs the loop until there are so many lines.
    void awaitLines(std::size_t count) const;

    const test::TemporaryFolder folder;
    const std::shared_ptr<AsioMainQueue> loop = std::make_shared<AsioMainQueue>();
    std::shared_ptr<QuorrandChat> chat;
};

}  // namespace supportsdk::bench
