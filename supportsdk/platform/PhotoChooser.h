#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "supportsdk/platform/Images.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// A picture that somebody chose: one that exists already, or one that is still to be read.
struct PhotoItem {
    /// Null when `read` brings it.
    ImagePtr image;
    /// The picture's file, whole; nothing when it cannot be read. Called once, on a background
    /// thread.
    std::function<std::optional<Bytes>()> read;
};

struct PhotoChooserOptions {
    /// No question about what the pictures show.
    bool hideClassificationOverlay = false;
};

/// The person's pictures: lets them choose some, or take one. Main thread.
class PhotoChooser {
 public:
    virtual ~PhotoChooser() = default;

    /// `completion` runs exactly once, on the main thread and never inside this call, with nothing
    /// when the person chose nothing. One chooser at a time: another call closes the first, which
    /// then has chosen nothing.
    virtual void choose(const PhotoChooserOptions& options,
                        std::function<void(std::vector<PhotoItem>)> completion) = 0;

    /// Adds a picture to them. False when they cannot be added to.
    virtual bool save(const ImagePtr& /*photo*/) { return false; }
};

}  // namespace supportsdk
