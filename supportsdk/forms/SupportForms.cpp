#include <algorithm>
#include <utility>

#include "supportsdk/core/Fields.h"
#include "supportsdk/core/Support.h"
#include "supportsdk/forms/FormValues.h"
#include "supportsdk/forms/QDFormModel.h"

namespace supportsdk {

namespace {

/// More forms than this are not fetched: all requests of a batch run at once.
constexpr std::size_t maximumForms = 256;

}  // namespace

void Support::getForm(const std::optional<std::string>& identifier, RestCallback success,
                      RestCallback failure) {
    executeGet("/forms/get/" + (identifier ? "?id=" + *identifier : ""), endpoint, Json(),
               strictly(std::move(success), std::move(failure)));
}

void Support::getSupportForms() {
    const Json identifiers = features.supportForms.value_or(Json::array());
    if (identifiers.empty() || isFormsRequested) return;
    if (identifiers.size() > maximumForms) {
        platform->log->write("The settings name " + std::to_string(identifiers.size()) +
                             " forms; only the first " + std::to_string(maximumForms) +
                             " are fetched.");
    }
    isFormsRequested = true;
    forms.clear();
    nFormRetrievalAttempts = 0;
    nFormsRequested = std::min(identifiers.size(), maximumForms);
    for (std::size_t index = 0; index < nFormsRequested; ++index) {
        const auto succeeded = [weak = weak_from_this()](const Json& response) {
            const auto self = weak.lock();
            if (!self) return;
            for (const auto& form : arrayForKey(response, "results"))
                self->forms.push_back(std::make_shared<QDFormModel>(form));
            self->checkIfFormsDone();
        };
        const auto failed = [weak = weak_from_this()](const Json& response) {
            const auto self = weak.lock();
            if (!self) return;
            self->platform->log->write("A form could not be fetched: " +
                                       stringForKey(response, "message").value_or(""));
            self->checkIfFormsDone();
        };
        getForm(IdentityValue(&identifiers.at(index)).text(), succeeded, failed);
    }
}

void Support::checkIfFormsDone() {
    // The settings may name other forms by now, so the batch remembers its own number.
    if (++nFormRetrievalAttempts != nFormsRequested) return;
    sortForms();
    isFormsRequested = false;
    platform->progress->dismiss();
    if (const auto told = formsDelegate.lock()) told->supportUpdateForms();
}

void Support::sortForms() {
    std::vector<std::pair<std::string, std::shared_ptr<QDFormModel>>> named;
    named.reserve(forms.size());
    for (const auto& form : forms) named.emplace_back(lowerCased(form->name.value_or("")), form);
    std::stable_sort(named.begin(), named.end(),
                     [](const auto& left, const auto& right) { return left.first < right.first; });
    std::transform(named.begin(), named.end(), forms.begin(),
                   [](const auto& entry) { return entry.second; });
}

void Support::putForm(const std::shared_ptr<QDFormModel>& form, RestCallback success,
                      RestCallback failure) {
    if (!form && failure) failure(Json());
    Json log = form ? form->dict() : Json::object();
    log["members_id"] = identity.membersId.json();
    log["members_users_id"] = identity.membersUsersId.json();
    log["members_locations_id"] = identity.membersLocationsId.json();
    log["members_devices_id"] = identity.membersDevicesId.json();
    const auto formId = form && form->checklist_id ? *form->checklist_id : "(null)";
    executePost("/forms/logs_put/?form_id=" + formId, endpoint,
                {{"checklists_log", std::move(log)}},
                strictly(std::move(success), std::move(failure)));
}

std::shared_ptr<QDFormModel> Support::currentForm() const {
    constexpr std::size_t current = 2;
    return forms.size() > current ? forms[current] : nullptr;
}

}  // namespace supportsdk
