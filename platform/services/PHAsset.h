// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Date.h"
#include "platform/foundation/URL.h"
#include "platform/services/PHAssetMediaType.h"

#include <optional>
#include <vector>

namespace platform {

// One photo or video of the user's library. A value.
struct PHAsset {
    URL fileURL;
    PHAssetMediaType mediaType; // as the file's name says; nobody has looked into it
    Date modificationDate;

    bool operator==(const PHAsset&) const = default;

    // Those that the program may see, the newest first: all where it was allowed to read, its own additions where that
    // was limited, else none. Of one kind, or of both. Reads folders, so it may take its time. Any thread.
    static std::vector<PHAsset> fetchAssets(std::optional<PHAssetMediaType> type = {});
};

} // namespace platform
