#include "supportsdk/launcher/RatingViewController.h"

#include <utility>

#include "supportsdk/theme/Appearance.h"

namespace supportsdk {

std::shared_ptr<RatingViewController> RatingViewController::create(
    std::shared_ptr<Support> support, std::weak_ptr<SupportButton> button) {
    return std::shared_ptr<RatingViewController>(
        new RatingViewController(std::move(support), std::move(button)));
}

void RatingViewController::viewDidLoad() {
    phoneNumberLabel = localized("How was your experience?");
    descriptionLabel = phoneNumberLabel;
    showTexts("Anything to add?");
    starOn = support->appearance->imageForName("star-on-sm");
    starOff = support->appearance->imageForName("star-off-sm");
    enableOkButton(true);
}

void RatingViewController::ratingButtonClicked(std::size_t tag) {
    constexpr std::size_t lastTag = numberOfStars - 1;
    if (tag == lastTag && ratingButtons[lastTag]) {
        ratingValue = lastTag;
    } else if (tag < numberOfStars) {
        ratingValue = tag + 1;
    }
    displayRating();
}

void RatingViewController::displayRating() {
    for (std::size_t star = 0; star < numberOfStars; ++star)
        ratingButtons[star] = star < ratingValue;
    if (const auto picture = view.lock()) picture->ratingDidChange();
}

void RatingViewController::submit() {
    rateIssue(support->rateableIssueId);
}

void RatingViewController::rateIssue(const std::optional<std::string>& issueId) {
    support->platform->progress->showStatus(localized("Rating your support experience"));
    auto failure = whenRequestFails("Unable to rate issue");
    if (!issueId) {
        // The person may have gone on to another issue while the dialog was open.
        support->platform->mainQueue->post([failure = std::move(failure)] {
            failure({{"status", 0}, {"message", "There is no issue to rate."}});
        });
        return;
    }
    auto success = [rated = *issueId, record = issue](Support& target, const auto&) {
        if (record) record->isRated = true;
        showConfirmation();
        // By now the rating of another one may be open.
        if (target.rateableIssueId == rated) target.rateableIssueId.reset();
        target.getHistory();
    };
    support->rateIssue(*issueId, static_cast<std::int64_t>(ratingValue), desc,
                       whenIssueArrives(std::move(success)), std::move(failure));
}

}  // namespace supportsdk
