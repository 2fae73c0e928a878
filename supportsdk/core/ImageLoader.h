#pragma once

#include <functional>
#include <memory>
#include <string>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Images.h"
#include "supportsdk/platform/Platform.h"

namespace supportsdk {

/// Loads pictures from addresses that strangers may have chosen: fetched and decoded off the main
/// thread, a few at a time, the others in the order of their calls. Main thread only. Keeps nothing
/// that it has loaded.
class SUPPORTSDK_API ImageLoader {
 public:
    /// The picture; null when there is none.
    using Completion = std::function<void(ImagePtr)>;

    static constexpr std::size_t maximumBytes = std::size_t{8} * 1024 * 1024;
    /// For one fetch, redirects included; time spent waiting for its turn does not count.
    static constexpr std::chrono::seconds timeLimit{30};
    /// For one without a byte, so that silent servers do not hold up the others for long.
    static constexpr std::chrono::seconds idleTimeLimit{10};
    /// How many are fetched or decoded at once, so that no crowd of addresses fills the memory.
    static constexpr std::size_t maximumLoads = 6;
    /// How many of these are decoded at once.
    static constexpr std::size_t maximumDecodes = 2;

    explicit ImageLoader(PlatformPtr platform);
    /// What has not completed does not complete any more.
    ~ImageLoader();
    ImageLoader(const ImageLoader&) = delete;
    ImageLoader& operator=(const ImageLoader&) = delete;

    /// Loads the picture at `url`, http or https. `completion` runs exactly once on the main
    /// thread, never inside this call, with null unless a response of 200 to 299 came in time,
    /// within maximumBytes, and is a picture. Calls for an address that is still being loaded share
    /// its one request.
    void load(const std::string& url, Completion completion);

 private:
    struct State;
    std::shared_ptr<State> state_;
};

}  // namespace supportsdk
