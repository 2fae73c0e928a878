#include "hosts/cli/RatingAdapter.h"

namespace supportsdk::host {

Json RatingAdapter::state() const {
    auto fields = DialogAdapter::state();
    for (std::size_t tag = 0; tag < dialog_->ratingButtons.size(); ++tag) {
        fields["stars"].push_back(
            {{"label", std::to_string(tag + 1)}, {"selected", dialog_->ratingButtons[tag]}});
    }
    return fields;
}

bool RatingAdapter::set(const std::string& field, const Json& value) {
    return field == heading() && value.is_number_integer() && tapStar(value.dump());
}

bool RatingAdapter::pressControl(const std::string& label) {
    return tapStar(label) || DialogAdapter::pressControl(label);
}

bool RatingAdapter::tapStar(const std::string& label) {
    for (std::size_t tag = 0; tag < dialog_->ratingButtons.size(); ++tag) {
        if (label != std::to_string(tag + 1)) continue;
        dialog_->ratingButtonClicked(tag);
        return true;
    }
    return false;
}

}  // namespace supportsdk::host
