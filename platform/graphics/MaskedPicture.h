// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/gradientMask.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace platform {

class RunPicture;

// What a gradient masks that moves, while it itself rests: kept after a while, so that a frame is one pass over it. What is
// kept is small: 256 KiB at most, and 16 MiB of all of them; what would be more is not kept. Main thread only.
class MaskedPicture {
public:
    MaskedPicture();
    ~MaskedPicture();

    // From now on the content looks different.
    void contentDidChange();
    // The same for all of them: what changes until the next frame will not be told.
    static void anythingMayChange();

    // Paints what `drawContent` draws in `area`, under the mask, within `dirty`: all in the context's present coordinates.
    // The mask is a gradient over all of the area. False: nothing was painted, for the content is new, or cannot be kept.
    bool paint(CGContext& context, const CGRect& area, const CGRect& dirty, const MaskGradient& mask,
               CGFloat alpha, const std::function<void(CGContext&)>& drawContent);

private:
    // What the picture was made for. Moving by whole pixels is none of it.
    struct Key {
        CGAffineTransform map; // to pixels, and from where the picture's place counts
        CGRect area;
        ColorAppearance appearance;
        std::uint64_t generation = 0;
        bool operator==(const Key&) const = default;
    };
    struct Uncount { // from the bytes of all that is kept
        void operator()(const RunPicture* picture) const;
    };
    // Null: it is too large.
    std::unique_ptr<const RunPicture> made(CGContext& context, const CGRect& area,
                                           const std::function<void(CGContext&)>& drawContent);
    void keep(std::unique_ptr<const RunPicture> picture);
    void waitLonger();

    Key key_;
    int wait_ = 0;      // frames that looked the same until one is kept
    int timesSeen_ = 0; // since the last change
    bool isTooLarge_ = false;
    std::unique_ptr<const RunPicture, Uncount> picture_;
    CGPoint place_; // in pixels
};

} // namespace platform
