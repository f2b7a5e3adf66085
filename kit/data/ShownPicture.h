// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/DeferredImage.h"
#include "platform/swiftui/AsyncImagePhase.h"

#include <memory>
#include <optional>
#include <string>

namespace zelk {

// A picture of a cached remote image, and what it comes from.
struct ShownPicture {
    std::shared_ptr<const std::string> data;
    platform::CGFloat scale = 1;
    std::shared_ptr<platform::DeferredImage> picture;
    std::optional<platform::PixelSize> size;       // none: it is not decoded yet
    std::optional<platform::PixelSize> decodedFor; // what was needed then; better would not come

    platform::AsyncImagePhase phase() const;
    // Whether it has the pixels that are needed (none: all), and not many more. Requires: it is decoded.
    bool fits(const std::optional<platform::PixelSize>& needed) const;
};

// The last picture that was decoded from this very piece of memory with this scale, while it is remembered: up to 16 MB, with
// the data. Any thread.
std::optional<ShownPicture> rememberedPicture(const std::shared_ptr<const std::string>& data,
                                              platform::CGFloat scale);

// These take their time: not for the main thread. What they give is decoded, and remembered; nothing: it is damaged, or has
// too many pixels.
std::optional<ShownPicture> decoded(ShownPicture picture);
std::optional<ShownPicture> decodedPicture(const std::shared_ptr<const std::string>& data,
                                           platform::CGFloat scale,
                                           const std::optional<platform::PixelSize>& needed);

// Not decoded yet, as a rule; nothing as above. Any thread.
std::optional<ShownPicture> deferredPicture(const std::shared_ptr<const std::string>& data,
                                            platform::CGFloat scale,
                                            const std::optional<platform::PixelSize>& needed);

} // namespace zelk
