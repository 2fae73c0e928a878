#include "supportsdk/platform/ImageShapes.h"

#include <algorithm>
#include <cmath>

namespace supportsdk {

namespace {

/// How much of the pixel at this offset from the centre lies in the circle, 0 to 1.
double coverage(double x, double y, double radius) {
    return std::clamp(radius - std::hypot(x, y) + 0.5, 0.0, 1.0);
}

void fadeRow(std::uint8_t* pixels, std::uint32_t side, double y) {
    const double radius = side / 2.0;
    for (std::uint32_t column = 0; column < side; ++column) {
        auto& alpha = pixels[std::size_t{column} * 4 + 3];
        alpha = static_cast<std::uint8_t>(
            std::lround(alpha * coverage(column + 0.5 - radius, y, radius)));
    }
}

}  // namespace

ImagePtr roundImage(const Image& image) {
    const auto side = std::min(image.width, image.height);
    if (side == 0 || image.pixels.size() / 4 / image.width != image.height) return nullptr;
    auto round = std::make_shared<Image>();
    round->width = round->height = side;
    round->pixels.reserve(std::size_t{side} * side * 4);
    const std::size_t left = (image.width - side) / 2;
    const std::size_t top = (image.height - side) / 2;
    for (std::size_t row = 0; row < side; ++row) {
        const auto* from = &image.pixels[((top + row) * image.width + left) * 4];
        round->pixels.insert(round->pixels.end(), from, from + std::size_t{side} * 4);
        fadeRow(&round->pixels[row * side * 4], side, static_cast<double>(row) + 0.5 - side / 2.0);
    }
    return round;
}

ImagePtr avatarFromImage(ImageCodec& images, const Image& image) {
    const auto side = std::min(image.width, image.height);
    if (side <= maximumAvatarSide) return roundImage(image);
    const auto shortened = [side](std::uint32_t length) {
        return static_cast<std::uint32_t>(std::uint64_t{length} * maximumAvatarSide / side);
    };
    const auto small = images.scaled(image, shortened(image.width), shortened(image.height));
    return small ? roundImage(*small) : nullptr;
}

}  // namespace supportsdk
