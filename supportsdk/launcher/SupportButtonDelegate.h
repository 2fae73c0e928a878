#pragma once

#include <memory>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Screens.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

struct SupportError;
class NetService;
class SupportButton;
class SupportMenuView;

/// What the button tells the host application, and asks it to show. Main thread; an operation that
/// is not overridden is silence. The host may release the button inside any of them.
class SUPPORTSDK_API SupportButtonDelegate {
 public:
    virtual ~SupportButtonDelegate() = default;

    /// Settings and, if they are enabled, journeys are in.
    virtual void supportButtonDidGetSettings(SupportButton& button) { (void)button; }
    /// The settings request failed; nothing is offered until a new configuration is loaded.
    virtual void supportButtonDidFailToGetSettingsWithError(SupportButton& button,
                                                            const SupportError& error) {
        (void)button, (void)error;
    }

    /// The customer is known, and issues can be created.
    virtual void supportButtonDidGetCustomer(SupportButton& button) { (void)button; }
    virtual void supportButtonDidFailToGetCustomerWithError(SupportButton& button,
                                                            const SupportError& error) {
        (void)button, (void)error;
    }

    /// Anything else that failed.
    virtual void supportButtonDidFailWithError(SupportButton& button, const SupportError& error) {
        (void)button, (void)error;
    }

    /// Show this popup menu.
    virtual void supportButtonDisplaySupportMenu(SupportButton& button, ActionSheet menu) {
        (void)button, (void)menu;
    }
    /// Show this menu until it asks to be removed.
    virtual void supportButtonDisplayView(SupportButton& button,
                                          std::shared_ptr<SupportMenuView> view) {
        (void)button, (void)view;
    }
    /// Show this screen and drive its life cycle.
    virtual void supportButtonDisplayViewController(SupportButton& button,
                                                    std::shared_ptr<ScreenController> screen) {
        (void)button, (void)screen;
    }
    /// The user left the kit: take its screens and the button away.
    virtual void supportButtonDidRequestExit(SupportButton& button) { (void)button; }

    /// The device's record is on the local network. It stays while the button holds the service.
    virtual void supportButtonDidAdvertiseService(SupportButton& button, NetService& service) {
        (void)button, (void)service;
    }
    /// It is not, or not any more; `errors` is that of NetServiceDelegate. Nothing else suffers.
    virtual void supportButtonDidFailToAdvertiseService(SupportButton& button, const Json& errors) {
        (void)button, (void)errors;
    }
};

}  // namespace supportsdk
