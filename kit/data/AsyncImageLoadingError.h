// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSError.h"

namespace zelk {

// What the kit adds to the platform's image view.
struct AsyncImage {
    // Data that is no picture, or one that is damaged or has too many pixels.
    struct LoadingError {
        bool operator==(const LoadingError&) const = default;
    };
};

// A domain named after the type, as for every error value without one.
platform::NSError nsError(const AsyncImage::LoadingError& error);

} // namespace zelk
