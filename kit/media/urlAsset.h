// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVURLAsset.h"

#include <memory>
#include <utility>

namespace zelk {

struct URLAssetOptions {
    // See AVURLAssetOptions.
    bool preferPreciseTiming;
};

inline std::shared_ptr<platform::AVURLAsset> urlAsset(platform::URL url, const URLAssetOptions& options)
{
    return std::make_shared<platform::AVURLAsset>(
        std::move(url),
        platform::AVURLAssetOptions{.AVURLAssetPreferPreciseDurationAndTimingKey =
                                        options.preferPreciseTiming});
}

} // namespace zelk
