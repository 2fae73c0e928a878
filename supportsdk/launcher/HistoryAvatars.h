#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "supportsdk/platform/Images.h"
#include "supportsdk/platform/Registration.h"

namespace supportsdk {

class ImageLoader;
class Support;

/// The pictures of the agents in a history, each loaded once it is asked for. Main thread only.
class HistoryAvatars {
 public:
    /// A list may name a hundred thousand addresses, which strangers may have chosen: beyond so
    /// many, rows keep what stands for their picture.
    static constexpr std::size_t maximumAddresses = 256;

    /// `changed` runs soon after pictures have come: once for those that come together, never
    /// inside a call, and not after stop() until another picture has been asked for.
    HistoryAvatars(std::shared_ptr<Support> support, std::function<void()> changed);
    ~HistoryAvatars();
    HistoryAvatars(const HistoryAvatars&) = delete;
    HistoryAvatars& operator=(const HistoryAvatars&) = delete;

    /// The picture at that address, round. Until it has come, and for good when there is no address
    /// or no picture, what stands for it; null when no bundle has that.
    ImagePtr pictureAt(const std::optional<std::string>& address);
    [[nodiscard]] bool hasPictureAt(const std::optional<std::string>& address) const;
    /// Gives up what is under way; it starts again when it is asked for again.
    void stop();

 private:
    ImagePtr placeholder();
    void load(const std::string& address);
    void shape(const std::string& address, const ImagePtr& image);
    void take(const std::string& address, const ImagePtr& avatar);

    const std::shared_ptr<Support> support_;
    const std::function<void()> changed_;
    /// What has come from each address, null when that was no picture; nothing while it is loaded.
    std::map<std::string, std::optional<ImagePtr>> pictures_;
    /// All that is under way ends with it.
    std::shared_ptr<ImageLoader> loader_;
    Registration changeTimer_;
    std::optional<ImagePtr> placeholder_;
};

}  // namespace supportsdk
