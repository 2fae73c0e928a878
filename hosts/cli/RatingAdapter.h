#pragma once

#include <functional>
#include <memory>
#include <string>

#include "hosts/cli/DialogAdapter.h"
#include "supportsdk/launcher/RatingViewController.h"

namespace supportsdk::host {

/// The dialog that asks for a rating: five stars, "1" to "5", above the comment.
class RatingAdapter : public DialogAdapter, public RatingViewController::View {
 public:
    RatingAdapter(std::shared_ptr<RatingViewController> dialog, std::function<void()> reloaded)
        : DialogAdapter(dialog, std::move(reloaded)), dialog_(std::move(dialog)) {}

    /// Taps the star with that number; the field is the heading.
    bool set(const std::string& field, const Json& value) override;

    void ratingDidChange() override { reload(); }

 protected:
    [[nodiscard]] Json state() const override;
    bool pressControl(const std::string& label) override;
    [[nodiscard]] std::string heading() const override { return dialog_->phoneNumberLabel; }

 private:
    bool tapStar(const std::string& label);

    const std::shared_ptr<RatingViewController> dialog_;
};

}  // namespace supportsdk::host
