#include "supportsdk/knowledge/JourneysViewController.h"

#include <utility>

#include "supportsdk/core/Url.h"
#include "supportsdk/knowledge/JourneyModel.h"
#include "supportsdk/knowledge/JourneyViewController.h"

namespace supportsdk {

std::shared_ptr<JourneysViewController> JourneysViewController::create(
    std::shared_ptr<Support> support) {
    return std::shared_ptr<JourneysViewController>(new JourneysViewController(std::move(support)));
}

JourneysViewController::JourneysViewController(std::shared_ptr<Support> owner)
    : support(std::move(owner)) {}

void JourneysViewController::viewDidLoad() {
    support->platform->progress->dismiss();
    title = support->platform->localizer->localized("Journeys");
}

void JourneysViewController::viewWillAppear() {
    const auto self = shared_from_this();
    isNavigationBarHidden = false;
    refresh();
    if (support->journeys.size() != 1) return;
    if (std::exchange(isJourneyShowing, false)) {
        support->platform->presenter->pop(*this);
    } else {
        showJourney(*support->journeys.front());
    }
}

void JourneysViewController::viewWillDisappear() {
    isNavigationBarHidden = true;
}

std::size_t JourneysViewController::numberOfRows() const {
    return support->journeys.size();
}

std::string JourneysViewController::textOfRow(std::size_t row) const {
    return row < numberOfRows() ? support->journeys[row]->title.value_or("") : "";
}

void JourneysViewController::didSelectRow(std::size_t row) {
    if (row < numberOfRows()) showJourney(*support->journeys[row]);
}

void JourneysViewController::showJourney(const JourneyModel& journey) {
    const auto& platform = *support->platform;
    const auto address = journey.journey_url.value_or("");
    if (!isWebAddress(address)) {
        platform.progress->showError(platform.localizer->localized("Unable to open webpage"));
        return;
    }
    platform.presenter->push(
        std::make_shared<JourneyViewController>(platform, journey.title.value_or(""),
                                                platform.localizer->localized("Done"), address),
        *this);
}

void JourneysViewController::back() {
    const auto& presenter = support->platform->presenter;
    if (presentingController.expired()) {
        presenter->pop(*this);
    } else {
        presenter->dismiss(*this);
    }
}

void JourneysViewController::refresh() {
    if (const auto picture = view.lock()) picture->reloadTable();
}

}  // namespace supportsdk
