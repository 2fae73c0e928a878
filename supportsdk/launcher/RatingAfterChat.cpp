#include "supportsdk/launcher/RatingAfterChat.h"

#include <utility>

#include "supportsdk/launcher/SupportButton.h"

namespace supportsdk {

namespace {

class RatingAfterChat : public ChatRating {
 public:
    RatingAfterChat(std::weak_ptr<Support> support, std::weak_ptr<SupportButton> button)
        : support_(std::move(support)), button_(std::move(button)) {}

    void displayRatingScreen() override {
        const auto support = support_.lock();
        const auto button = button_.lock();
        if (support && button && button->support == support)
            support->displayRatingScreenFromButton(button);
    }

 private:
    const std::weak_ptr<Support> support_;
    const std::weak_ptr<SupportButton> button_;
};

}  // namespace

std::shared_ptr<ChatRating> ratingAfterChat(std::weak_ptr<Support> support,
                                            std::weak_ptr<SupportButton> button) {
    return std::make_shared<RatingAfterChat>(std::move(support), std::move(button));
}

}  // namespace supportsdk
