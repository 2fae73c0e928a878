#include "supportsdk/launcher/HistoryAvatars.h"

#include <utility>

#include "supportsdk/core/ImageLoader.h"
#include "supportsdk/core/Support.h"
#include "supportsdk/platform/ImageShapes.h"
#include "supportsdk/theme/Appearance.h"

namespace supportsdk {

namespace {
/// Pictures of one list come within moments, and each would reload all of it.
constexpr std::chrono::milliseconds changeDelay{100};
}  // namespace

HistoryAvatars::HistoryAvatars(std::shared_ptr<Support> support, std::function<void()> changed)
    : support_(std::move(support)), changed_(std::move(changed)) {}

HistoryAvatars::~HistoryAvatars() = default;

ImagePtr HistoryAvatars::placeholder() {
    if (!placeholder_) placeholder_ = support_->appearance->imageForName("user-placeholder-round");
    return *placeholder_;
}

ImagePtr HistoryAvatars::pictureAt(const std::optional<std::string>& address) {
    if (!address) return placeholder();
    const auto known = pictures_.find(*address);
    if (known != pictures_.end()) {
        const auto picture = known->second.value_or(nullptr);
        return picture ? picture : placeholder();
    }
    if (pictures_.size() < maximumAddresses) load(*address);
    return placeholder();
}

bool HistoryAvatars::hasPictureAt(const std::optional<std::string>& address) const {
    const auto known = address ? pictures_.find(*address) : pictures_.end();
    return known != pictures_.end() && known->second.value_or(nullptr);
}

void HistoryAvatars::stop() {
    loader_.reset();
    changeTimer_.reset();
    std::erase_if(pictures_, [](const auto& picture) { return !picture.second; });
}

void HistoryAvatars::load(const std::string& address) {
    pictures_[address] = std::nullopt;
    if (!loader_) loader_ = std::make_shared<ImageLoader>(support_->platform);
    loader_->load(address, [this, address](const ImagePtr& image) { shape(address, image); });
}

void HistoryAvatars::shape(const std::string& address, const ImagePtr& image) {
    if (!image) return take(address, nullptr);
    const auto& platform = *support_->platform;
    platform.backgroundQueue->post([this, loader = std::weak_ptr(loader_), address, image,
                                    images = platform.images, queue = platform.mainQueue] {
        queue->post([this, loader, address, avatar = avatarFromImage(*images, *image)] {
            // The loader lives no longer than this object.
            if (!loader.expired()) take(address, avatar);
        });
    });
}

void HistoryAvatars::take(const std::string& address, const ImagePtr& avatar) {
    pictures_[address] = avatar;
    if (avatar && !changeTimer_)
        changeTimer_ = support_->platform->mainQueue->after(changeDelay, [this] {
            changeTimer_.reset();
            changed_();
        });
}

}  // namespace supportsdk
