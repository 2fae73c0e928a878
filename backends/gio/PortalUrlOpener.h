#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "supportsdk/platform/Queues.h"
#include "supportsdk/platform/UrlOpener.h"

namespace supportsdk {

struct PortalUrlOpenerOptions {
    /// Where completions run, and where the waiting is done. Both required.
    std::shared_ptr<MainQueue> mainQueue;
    std::shared_ptr<BackgroundQueue> backgroundQueue;
    /// The portal must answer the call within this time.
    std::chrono::milliseconds callTimeout = std::chrono::seconds{10};
    /// The person, whom the portal may ask which program to take, within this one.
    std::chrono::milliseconds choiceTimeout = std::chrono::minutes{2};
};

/// Opens addresses through the desktop portal (org.freedesktop.portal.OpenURI on the session bus),
/// so that the kit starts no program itself, and sandboxed hosts work too. Each opening makes a
/// connection of its own and closes it; nothing is kept. Without a session bus, a portal, or an
/// answer in time, opening fails. Destroying this ends what is under way; that still completes,
/// with false.
class PortalUrlOpener final : public UrlOpener {
 public:
    explicit PortalUrlOpener(PortalUrlOpenerOptions options);
    ~PortalUrlOpener() override;
    PortalUrlOpener(const PortalUrlOpener&) = delete;
    PortalUrlOpener& operator=(const PortalUrlOpener&) = delete;

    /// Whether the desktop's settings name a program for the scheme (mimeapps.list).
    [[nodiscard]] bool canOpen(const std::string& url) override;
    void open(const std::string& url, std::function<void(bool worked)> completion) override;
    /// Whether there is one for mailto.
    [[nodiscard]] bool canSendMail() override;

 private:
    struct Cancel;

    const PortalUrlOpenerOptions options_;
    std::shared_ptr<Cancel> cancel_;
};

}  // namespace supportsdk
