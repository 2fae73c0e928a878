#include "hosts/cli/HostDelegate.h"

#include "hosts/cli/Looks.h"
#include "supportsdk/core/Error.h"

namespace supportsdk::host {

void HostDelegate::report(const char* operation, const Json& arguments) {
    auto fields = arguments;
    fields["operation"] = operation;
    reports_->write("delegate", fields);
}

void HostDelegate::reportError(const char* operation, const SupportError& error) {
    Json told = {{"domain", error.domain},
                 {"code", error.code},
                 {"description", error.localizedDescription}};
    if (const auto& reason = error.localizedFailureReason) told["reason"] = *reason;
    report(operation, Json{{"error", std::move(told)}});
}

void HostDelegate::supportButtonDidGetSettings(SupportButton&) {
    report("supportButtonDidGetSettings");
}

void HostDelegate::supportButtonDidFailToGetSettingsWithError(SupportButton&,
                                                              const SupportError& error) {
    reportError("supportButtonDidFailToGetSettingsWithError", error);
}

void HostDelegate::supportButtonDidGetCustomer(SupportButton&) {
    report("supportButtonDidGetCustomer");
}

void HostDelegate::supportButtonDidFailToGetCustomerWithError(SupportButton&,
                                                              const SupportError& error) {
    reportError("supportButtonDidFailToGetCustomerWithError", error);
}

void HostDelegate::supportButtonDidFailWithError(SupportButton&, const SupportError& error) {
    reportError("supportButtonDidFailWithError", error);
}

void HostDelegate::supportButtonDisplaySupportMenu(SupportButton&, ActionSheet menu) {
    report("supportButtonDisplaySupportMenu", {{"title", menu.title}});
    presenter_->showSheet(std::move(menu));
}

void HostDelegate::supportButtonDisplayView(SupportButton&, std::shared_ptr<SupportMenuView> view) {
    report("supportButtonDisplayView", {{"class", "SupportMenuView"}});
    presenter_->choices().showMenu(std::move(view));
}

void HostDelegate::supportButtonDisplayViewController(SupportButton&,
                                                      std::shared_ptr<ScreenController> screen) {
    report("supportButtonDisplayViewController", {{"class", screen ? screen->className() : ""}});
    presenter_->display(std::move(screen));
}

void HostDelegate::supportButtonDidRequestExit(SupportButton&) {
    report("supportButtonDidRequestExit");
    presenter_->clear();
}

void HostDelegate::supportButtonDidAdvertiseService(SupportButton&, NetService& service) {
    report("supportButtonDidAdvertiseService", {{"name", service.name()},
                                                {"type", service.type()},
                                                {"domain", service.domain()},
                                                {"port", service.port()}});
}

void HostDelegate::supportButtonDidFailToAdvertiseService(SupportButton&, const Json& errors) {
    report("supportButtonDidFailToAdvertiseService", {{"errors", errors}});
}

void HostDelegate::badgeDidChange(bool visible, const std::string& text) {
    reports_->write("badge", {{"visible", visible}, {"text", text}});
}

void HostDelegate::iconDidChange(const ImagePtr& icon) {
    reports_->write("icon", describeImage(icon));
}

}  // namespace supportsdk::host
