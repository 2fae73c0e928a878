#include "supportsdk/chat/ChatPictures.h"

#include <utility>

#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/chat/QuorrandChatMessage.h"
#include "supportsdk/core/ImageLoader.h"
#include "supportsdk/platform/ImageShapes.h"

namespace supportsdk {

namespace {

ImagePtr makePreview(ImageCodec& images, const Image& image) {
    return images.scaled(image, ChatPictures::previewSide, ChatPictures::previewSide);
}

bool isSamePicture(const ImagePtr& one, const Image& other) {
    return one && one->width == other.width && one->height == other.height &&
           one->pixels == other.pixels;
}

}  // namespace

ChatPictures::ChatPictures() = default;
ChatPictures::~ChatPictures() = default;

ImagePtr ChatPictures::avatarPlaceholder(const QuorrandChat& chat) {
    if (!avatarPlaceholder_) {
        const auto image = chat.imageForResource("user-placeholder-round.png");
        avatarPlaceholder_ = image ? roundImage(*image) : nullptr;
    }
    return *avatarPlaceholder_;
}

ImagePtr ChatPictures::missingPreview(const QuorrandChat& chat) {
    if (!missingPreview_) missingPreview_ = chat.imageForResource("image-not-available.jpg");
    return *missingPreview_;
}

void ChatPictures::loadAvatar(QuorrandChat& chat, const std::string& address,
                              std::shared_ptr<QuorrandChatMessage> line) {
    if (avatars_.size() >= maximumWaitingAvatars && !avatars_.contains(address)) return;
    auto& lines = avatars_[address];
    lines.push_back(std::move(line));
    if (lines.size() > 1) return;
    load(chat.imageLoader(), chat, address, avatarFromImage, &ChatPictures::avatarDidArrive);
}

void ChatPictures::loadPreview(QuorrandChat& chat, const std::string& address,
                               std::shared_ptr<QuorrandChatMessage> line) {
    if (previews_.size() >= maximumWaitingPreviews && !previews_.contains(address)) return;
    auto& lines = previews_[address];
    lines.push_back(std::move(line));
    if (lines.size() > 1) return;
    if (!previewLoader_) previewLoader_ = std::make_unique<ImageLoader>(chat.platform);
    load(*previewLoader_, chat, address, makePreview, &ChatPictures::previewDidArrive);
}

void ChatPictures::load(ImageLoader& loader, QuorrandChat& chat, const std::string& address,
                        Shape shape, Arrival arrival) {
    const auto arrive = [weak = chat.weak_from_this(), address, arrival](const ImagePtr& image) {
        if (const auto engine = weak.lock()) (engine->pictures().*arrival)(*engine, address, image);
    };
    loader.load(address, [arrive, shape, platform = chat.platform](const ImagePtr& image) {
        if (!image) return arrive(nullptr);
        platform->backgroundQueue->post(
            [arrive, shape, image, images = platform->images, queue = platform->mainQueue] {
                queue->post([arrive, shaped = shape(*images, *image)] { arrive(shaped); });
            });
    });
}

std::vector<std::shared_ptr<QuorrandChatMessage>> ChatPictures::takeLines(
    Waiting& waiting, const std::string& address) {
    auto lines = waiting.extract(address);
    if (lines.empty()) return {};
    return std::move(lines.mapped());
}

void ChatPictures::avatarDidArrive(QuorrandChat& chat, const std::string& address,
                                   const ImagePtr& image) {
    const auto lines = takeLines(avatars_, address);
    if (!image) return;
    auto& kept = chat.avatars[address];
    // The picture is loaded again for each new line, and hardly ever another one.
    if (!isSamePicture(kept, *image)) kept = image;
    for (const auto& line : lines) line->avatarImage = kept;
    chat.picturesDidLoad();
}

void ChatPictures::previewDidArrive(QuorrandChat& chat, const std::string& address,
                                    const ImagePtr& image) {
    const auto lines = takeLines(previews_, address);
    if (!image) return;
    for (const auto& line : lines) line->previewImage = image;
    chat.picturesDidLoad();
}

}  // namespace supportsdk
