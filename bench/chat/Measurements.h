#pragma once

namespace supportsdk::bench {

/// Lines a second from the bytes on a socket to the list, beside libstrophe parsing the same bytes.
void measurePipeline();

/// What a line costs in a long chat against a short one, without the network, and the memory that
/// it stays in.
void measureGrowth();
void measureMemory();

/// From sendGroupchatMessage() to the bytes at the server, beside libstrophe on its own thread.
void measureSending();

}  // namespace supportsdk::bench
