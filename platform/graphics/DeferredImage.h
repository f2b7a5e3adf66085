// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/decodeImage.h"

#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace platform {

// An encoded picture that can be laid out at once, as its head says how large it is, and is decoded by who needs it first:
// whoever asks, from any thread, or else whoever draws it. Others who need it meanwhile wait.
//
// What is small, or shorter than its format says, is decoded when this is made, so that damage is an error there. Other
// damage is found when it is decoded: such a picture draws nothing.
class DeferredImage {
public:
    // Errors: as decodeImage().
    [[nodiscard]] static Result<std::shared_ptr<DeferredImage>>
    make(std::shared_ptr<const std::string> data, const ImageDecodingOptions& options = {});

    // Its size in points is that of the whole picture, with however few pixels it comes.
    const UIImage& image() const { return image_; }
    // Upright, as it is in the data.
    PixelSize fullSize() const { return fullSize_; }
    // Whether the format can be decoded with fewer pixels in less time.
    bool isFasterWithFewerPixels() const { return isFasterWithFewerPixels_; }
    // Instead of what the options said; without effect once decoding has begun.
    void setSufficientSize(std::optional<PixelSize> size);
    // Decodes unless that is done. Gives the pixels that there are; nothing: it is damaged.
    std::optional<PixelSize> decode() const;

private:
    struct Wish {
        std::mutex mutex;
        std::optional<PixelSize> sufficientSize; // guarded by mutex
    };
    DeferredImage(UIImage image, PixelSize fullSize, bool isFasterWithFewerPixels,
                  std::shared_ptr<Wish> wish);

    // fixed after construction
    const UIImage image_;
    const PixelSize fullSize_;
    const bool isFasterWithFewerPixels_;
    const std::shared_ptr<Wish> wish_; // null: nothing is deferred
};

} // namespace platform
