// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Result.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIImage.h"

#include <string>
#include <variant>

namespace platform {

// A photo that something is cut out of: a picture, or the file of one. Any thread.
class CroppablePhoto {
public:
    explicit CroppablePhoto(UIImage picture)
        : source_(std::move(picture))
    {
    }
    explicit CroppablePhoto(std::string path)
        : source_(std::move(path))
    {
    }

    // A copy of the photo whose shorter side has about `side` pixels, or as many as it has; and how many it has.
    struct Shown {
        UIImage image;
        CGSize fullSize; // pixels, upright
    };
    Result<Shown> shown(int side) const;

    struct Cut {
        UIImage part, whole;
    };
    // `part` is in pixels of the upright photo; what is outside of it is left out. Errors: those of UIImage::fromFile.
    Result<Cut> cut(const CGRect& part) const;

private:
    std::variant<UIImage, std::string> source_;
};

} // namespace platform
