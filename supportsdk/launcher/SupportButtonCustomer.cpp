#include "supportsdk/core/Error.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/launcher/SupportButton.h"

namespace supportsdk {

void SupportButton::takeCustomer(const std::string& json) {
    // A bare text, number or null is no description of anybody.
    auto information = parseJson(json);
    if (information && information->is_structured()) customerInfo = *std::move(information);
}

void SupportButton::getCustomerWithJSON(const std::string& json) {
    if (!isUtf8(json)) return;
    takeCustomer(json);
    if (customerInfo) getCustomerWithInformation(*customerInfo);
}

void SupportButton::getCustomerWithInformation(const Json& information) {
    if (!information.is_object()) return;
    if (information.empty()) {
        failWithDescription("Unable to retrieve customer", "Customer information is missing.");
        return;
    }
    if (!support) return;
    support->getCustomer(information, unlessReloaded(&SupportButton::customerResolved),
                         unlessReloaded(&SupportButton::customerNotResolved));
}

void SupportButton::customerResolved(const Json&) {
    if (const auto told = delegate.lock()) told->supportButtonDidGetCustomer(*this);
}

void SupportButton::customerNotResolved(const Json& response) {
    if (const auto told = delegate.lock()) {
        told->supportButtonDidFailToGetCustomerWithError(
            *this, makeError("Unable to retrieve customer information",
                             stringForKey(response, "message")));
    }
}

void SupportButton::validateCustomerInformation() {
    if (memberID && memberUserID && memberLocationID) return;
    failWithDescription("Unable to retrieve customer", "Unable to retrieve customer information.");
}

}  // namespace supportsdk
