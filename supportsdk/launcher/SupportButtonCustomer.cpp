#include "supportsdk/core/Error.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/launcher/SupportButton.h"

namespace supportsdk {

void SupportButton::getCustomerWithJSON(const std::string& json) {
    if (auto information = parseJson(json)) customerInfo = *std::move(information);
    if (customerInfo) getCustomerWithInformation(*customerInfo);
}

void SupportButton::getCustomerWithInformation(const Json& information) {
    if (!information.is_object()) return;
    if (information.empty()) {
        failWithDescription("Unable to retrieve customer", "Customer information is missing.");
        return;
    }
    if (!support) return;
    const auto weak = weak_from_this();
    support->getCustomer(
        information,
        [weak](const Json&) {
            const auto self = weak.lock();
            if (!self) return;
            if (const auto told = self->delegate.lock()) told->supportButtonDidGetCustomer(*self);
        },
        [weak](const Json& response) {
            const auto self = weak.lock();
            if (!self) return;
            if (const auto told = self->delegate.lock()) {
                told->supportButtonDidFailToGetCustomerWithError(
                    *self, self->makeError("Unable to retrieve customer information",
                                           stringForKey(response, "message")));
            }
        });
}

void SupportButton::validateCustomerInformation() {
    if (memberID && memberUserID && memberLocationID) return;
    failWithDescription("Unable to retrieve customer", "Unable to retrieve customer information.");
}

}  // namespace supportsdk
