// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/URL.h"
#include "platform/graphics/UIImage.h"

#include <functional>
#include <string>

namespace platform {

// Where a photo comes from: its file, or what would be in it.
struct PhotoOrigin {
    std::string path;
    std::string jpeg; // where there is no path
};

// Writes what was cut out of a photo to a file of its own in the temporary folder, on another thread: JPEG, with what is still true
// of the original's description and the profile of its colours, if that is JPEG; otherwise PNG. `told` is called once, on the
// main thread; the file is then its to remove.
void writeCroppedPhoto(const UIImage& part, PhotoOrigin original,
                       std::function<void(const Result<URL>&)> told);

} // namespace platform
