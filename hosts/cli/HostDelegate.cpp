#include "hosts/cli/HostDelegate.h"

#include "supportsdk/core/Error.h"

namespace supportsdk::host {

void HostDelegate::report(const char* operation, const SupportError* error) {
    Json fields = {{"operation", operation}};
    if (error) {
        fields["error"] = {{"domain", error->domain},
                           {"code", error->code},
                           {"description", error->localizedDescription}};
        if (const auto& reason = error->localizedFailureReason) fields["error"]["reason"] = *reason;
    }
    reports_->write("delegate", fields);
}

void HostDelegate::supportButtonDidGetSettings(SupportButton&) {
    report("supportButtonDidGetSettings");
}

void HostDelegate::supportButtonDidFailToGetSettingsWithError(SupportButton&,
                                                              const SupportError& error) {
    report("supportButtonDidFailToGetSettingsWithError", &error);
}

void HostDelegate::supportButtonDidGetCustomer(SupportButton&) {
    report("supportButtonDidGetCustomer");
}

void HostDelegate::supportButtonDidFailToGetCustomerWithError(SupportButton&,
                                                              const SupportError& error) {
    report("supportButtonDidFailToGetCustomerWithError", &error);
}

void HostDelegate::supportButtonDidFailWithError(SupportButton&, const SupportError& error) {
    report("supportButtonDidFailWithError", &error);
}

void HostDelegate::supportButtonDisplaySupportMenu(SupportButton&, ActionSheet menu) {
    report("supportButtonDisplaySupportMenu");
    presenter_->showSheet(std::move(menu));
}

void HostDelegate::supportButtonDisplayView(SupportButton&, std::shared_ptr<SupportMenuView> view) {
    report("supportButtonDisplayView");
    presenter_->showMenu(std::move(view));
}

void HostDelegate::supportButtonDisplayViewController(SupportButton&,
                                                      std::shared_ptr<ScreenController> screen) {
    report("supportButtonDisplayViewController");
    presenter_->display(std::move(screen));
}

void HostDelegate::supportButtonDidRequestExit(SupportButton&) {
    report("supportButtonDidRequestExit");
    presenter_->clear();
}

void HostDelegate::badgeDidChange(bool visible, const std::string& text) {
    reports_->write("badge", {{"visible", visible}, {"text", text}});
}

}  // namespace supportsdk::host
