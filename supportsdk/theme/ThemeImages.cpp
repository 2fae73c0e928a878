#include "supportsdk/theme/ThemeImages.h"

#include "supportsdk/core/Fields.h"

namespace supportsdk {

ImagePtr ThemeImages::find(const Json& name) {
    if (!name.is_string()) return nullptr;
    const auto& text = name.get_ref<const std::string&>();
    if (const auto known = searched_.find(text); known != searched_.end()) return known->second;
    if (searched_.size() >= maximumNames || bytes_ > maximumBytes) return nullptr;

    auto image = appearance_.imageForName(text);
    if (image) bytes_ += image->pixels.size();
    if (bytes_ > maximumBytes) image = nullptr;
    return searched_[text] = std::move(image);
}

ImagePtr Appearance::imageForName(const std::string& name) const {
    const auto decode = [this](const std::optional<Bytes>& data) {
        return data ? platform_->images->decode(*data) : nullptr;
    };
    if (auto own = decode(platform_->kitBundle->data(name, "png"))) return own;
    // The host's picture, and no other when it is damaged. There is nowhere left to search after
    // it: the kit's bundle would answer as before.
    return decode(platform_->mainBundle->data(name, "png"));
}

}  // namespace supportsdk
