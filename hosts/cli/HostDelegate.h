#pragma once

#include <memory>
#include <string>

#include "hosts/cli/HostPresenter.h"
#include "hosts/cli/Reports.h"
#include "supportsdk/launcher/SupportButton.h"

namespace supportsdk::host {

/// Reports what the button tells, and hands what it wants shown to the presenter.
class HostDelegate : public SupportButtonDelegate, public SupportButton::View {
 public:
    HostDelegate(std::shared_ptr<Reports> reports, std::shared_ptr<HostPresenter> presenter)
        : reports_(std::move(reports)), presenter_(std::move(presenter)) {}

    void supportButtonDidGetSettings(SupportButton&) override;
    void supportButtonDidFailToGetSettingsWithError(SupportButton&,
                                                    const SupportError& error) override;
    void supportButtonDidGetCustomer(SupportButton&) override;
    void supportButtonDidFailToGetCustomerWithError(SupportButton&,
                                                    const SupportError& error) override;
    void supportButtonDidFailWithError(SupportButton&, const SupportError& error) override;
    void supportButtonDisplaySupportMenu(SupportButton&, ActionSheet menu) override;
    void supportButtonDisplayView(SupportButton&, std::shared_ptr<SupportMenuView> view) override;
    void supportButtonDisplayViewController(SupportButton&,
                                            std::shared_ptr<ScreenController> screen) override;
    void supportButtonDidRequestExit(SupportButton& button) override;
    void supportButtonDidAdvertiseService(SupportButton&, NetService& service) override;
    void supportButtonDidFailToAdvertiseService(SupportButton&, const Json& errors) override;

    void badgeDidChange(bool visible, const std::string& text) override;
    void iconDidChange(const ImagePtr& icon) override;

 private:
    void report(const char* operation, const Json& arguments = Json::object());
    void reportError(const char* operation, const SupportError& error);

    std::shared_ptr<Reports> reports_;
    std::shared_ptr<HostPresenter> presenter_;
};

}  // namespace supportsdk::host
