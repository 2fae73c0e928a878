#include "supportsdk/chat/ChatPhotos.h"

#include <algorithm>
#include <utility>

namespace supportsdk {

namespace {

ImagePtr readPhoto(ImageCodec& codec, const PhotoItem& item) {
    if (item.image) return item.image;
    const auto data = item.read ? item.read() : std::nullopt;
    return data ? codec.decode(*data) : nullptr;
}

}  // namespace

ImagePtr scaleAndRotateImage(ImageCodec& codec, const ImagePtr& image) {
    if (!image || image->width == 0 || image->height == 0) return nullptr;
    const auto longest = std::max(image->width, image->height);
    if (longest <= longestPhotoSide) return image;
    const auto scaled = [longest](std::uint32_t side) {
        const auto rounded = (std::uint64_t{side} * longestPhotoSide + longest / 2) / longest;
        return std::max<std::uint32_t>(1, static_cast<std::uint32_t>(rounded));
    };
    return codec.scaled(*image, scaled(image->width), scaled(image->height));
}

void preparePhoto(const Platform& platform, PhotoItem item,
                  std::function<void(ImagePtr)> completion) {
    platform.backgroundQueue->post([item = std::move(item), completion = std::move(completion),
                                    codec = platform.images, queue = platform.mainQueue]() mutable {
        auto image = scaleAndRotateImage(*codec, readPhoto(*codec, item));
        queue->post([image = std::move(image), completion = std::move(completion)]() mutable {
            completion(std::move(image));
        });
    });
}

}  // namespace supportsdk
