#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "supportsdk/core/QDIssue.h"
#include "supportsdk/launcher/DialogViewController.h"
#include "supportsdk/platform/Images.h"

namespace supportsdk {

/// Asks for up to five stars and a comment, and rates the issue that Support names as
/// `rateableIssueId`. Main thread only.
class SUPPORTSDK_API RatingViewController : public DialogViewController {
 public:
    static constexpr std::size_t numberOfStars = 5;

    /// What the screen asks of its picture.
    class View {
     public:
        virtual ~View() = default;
        /// Other stars are selected.
        virtual void ratingDidChange() = 0;
    };

    /// `support` may not be null.
    static std::shared_ptr<RatingViewController> create(std::shared_ptr<Support> support,
                                                        std::weak_ptr<SupportButton> button);

    [[nodiscard]] std::string_view className() const override { return "RatingViewController"; }
    void viewDidLoad() override;

    /// A tap on the star with this tag, 0 to 4: selects it and those below it, but the last star,
    /// when it is selected already, takes itself back. No tap leads to 0. Any other tag only shows
    /// the rating again.
    void ratingButtonClicked(std::size_t tag);
    /// Selects the stars below `ratingValue`, and no others.
    void displayRating();
    /// Sends `ratingValue`, 0 included, and `desc`. Without an id the host is told, as of a failed
    /// request. The issue stays rateable until the service has taken a rating.
    void rateIssue(const std::optional<std::string>& issueId);
    /// A rating gets no word of thanks.
    static void showConfirmation() {}

    std::weak_ptr<View> view;
    /// Nothing here reads it.
    std::optional<std::string> callbackNumber;
    /// The host's own record of the issue, marked as rated on success; nothing in the kit sets it.
    std::shared_ptr<QDIssue> issue;
    /// Above the stars: the question. It asks for no number; hosts know it by this name.
    std::string phoneNumberLabel;
    /// Whether each star is selected.
    std::array<bool, numberOfStars> ratingButtons{};
    /// Of a selected star and of another one; null when the kit's bundle has none.
    ImagePtr starOn;
    ImagePtr starOff;
    std::uint64_t ratingValue = 0;

 protected:
    void submit() override;

 private:
    using DialogViewController::DialogViewController;
};

}  // namespace supportsdk
