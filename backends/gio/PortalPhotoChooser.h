#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

#include "supportsdk/platform/Localizer.h"
#include "supportsdk/platform/Log.h"
#include "supportsdk/platform/PhotoChooser.h"
#include "supportsdk/platform/Queues.h"

namespace supportsdk {

struct PortalPhotoChooserOptions {
    // Where completions run, where the portal is waited for, where it is told that there is no
    // portal, and who says "Choose pictures" above the portal's window. All required.
    std::shared_ptr<MainQueue> mainQueue;
    std::shared_ptr<BackgroundQueue> backgroundQueue;
    std::shared_ptr<Log> log;
    std::shared_ptr<Localizer> localizer;
    /// The portal must answer the call within this time.
    std::chrono::milliseconds callTimeout = std::chrono::seconds{10};
    /// The person within this one.
    std::chrono::milliseconds choiceTimeout = std::chrono::hours{1};
};

/// Pictures chosen through the desktop portal (org.freedesktop.portal.FileChooser on the session
/// bus), which shows its own window and lets sandboxed hosts read what was chosen. Without a
/// session bus or a portal nobody has chosen anything, and the log tells. A picture of more than 64
/// MiB, or one that is no plain file of this machine, cannot be read. Destroying this closes the
/// window; what waited has then chosen nothing.
class PortalPhotoChooser final : public PhotoChooser {
 public:
    explicit PortalPhotoChooser(PortalPhotoChooserOptions options);
    ~PortalPhotoChooser() override;
    PortalPhotoChooser(const PortalPhotoChooser&) = delete;
    PortalPhotoChooser& operator=(const PortalPhotoChooser&) = delete;

    void choose(const PhotoChooserOptions& options,
                std::function<void(std::vector<PhotoItem>)> completion) override;

 private:
    using Completion = std::function<void(std::vector<PhotoItem>)>;
    struct Choice;

    void cancel();

    const PortalPhotoChooserOptions options_;
    std::weak_ptr<Choice> latest_;
    /// A queue of its own: a person may take long, and the few shared threads have other work.
    std::shared_ptr<SerialQueue> queue_;
};

}  // namespace supportsdk
