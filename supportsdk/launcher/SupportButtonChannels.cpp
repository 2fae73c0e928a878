#include "supportsdk/core/Fields.h"
#include "supportsdk/forms/FormListViewController.h"
#include "supportsdk/forms/FormViewController.h"
#include "supportsdk/knowledge/JourneysViewController.h"
#include "supportsdk/knowledge/KBListViewController.h"
#include "supportsdk/launcher/CallMeViewController.h"
#include "supportsdk/launcher/HistoryViewController.h"
#include "supportsdk/launcher/SupportButton.h"

namespace supportsdk {

void SupportButton::actionCallMe() {
    getCallbackNumber();
}

void SupportButton::getCallbackNumber() {
    if (!support) return;
    support->getCallbackNumber(unlessReloaded(&SupportButton::callbackNumberFetched),
                               unlessReloaded(&SupportButton::callbackNumberMissing));
}

void SupportButton::callbackNumberFetched(const Json& response) {
    const auto* number = valueForKey(response, "callback_number");
    callMe(number ? std::optional(*number) : std::nullopt);
}

void SupportButton::callbackNumberMissing(const Json&) {
    callMe(std::nullopt);
}

void SupportButton::callMe(const std::optional<Json>& number) {
    if (!support) return;
    const auto screen = CallMeViewController::create(support, weak_from_this());
    screen->title = support->features.callMeButtonText.value_or("");
    if (!number || !number->is_null()) {
        const auto* text = number ? number->get_ptr<const Json::string_t*>() : nullptr;
        screen->callbackNumber = text ? std::optional(*text) : std::nullopt;
    }
    screen->showFromView();
}

void SupportButton::actionSearchKnowledge() {
    const auto self = shared_from_this();
    hideBadge();
    displayKnowledgeBase();
}

void SupportButton::displayKnowledgeBase() {
    if (!support) return;
    kbListViewController = KBListViewController::create(support, weak_from_this());
    displayScreen(kbListViewController);
}

void SupportButton::actionForms() {
    if (!support) return;
    const auto& forms = support->forms;
    if (forms.empty()) {
        support->getSupportForms();
    } else if (forms.size() == 1) {
        auto screen = FormViewController::create(forms.front(), support);
        screen->viewModel->isSideBySideLayout = isSideBySideForms;
        displayScreen(std::move(screen));
    } else {
        displayScreen(FormListViewController::create(support));
    }
}

void SupportButton::actionHistory() {
    if (!support) return;
    auto screen = HistoryViewController::create(support, weak_from_this());
    support->historyDelegate = screen;
    displayScreen(std::move(screen));
}

void SupportButton::actionJourneys() {
    if (support) displayScreen(JourneysViewController::create(support));
}

}  // namespace supportsdk
