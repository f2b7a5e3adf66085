// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/URL.h"
#include "platform/graphics/UIImage.h"

#include <functional>
#include <string>

namespace platform {

// Writes what was cut out of a photo to a file of its own in the temporary folder, on another thread: JPEG if the file `original`
// is, or if it is empty as there is none, otherwise PNG. `told` is called once, on the main thread; the file is then its to remove.
void writeCroppedPhoto(const UIImage& part, const std::string& original,
                       std::function<void(const Result<URL>&)> told);

} // namespace platform
