// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/URL.h"
#include "platform/graphics/UIImage.h"
#include "platform/services/MediaListing.h"

#include <optional>
#include <vector>

namespace gallery {

// Something to pick, drawn on the spot and kept in a folder that goes with the program. Main thread only.

// A landscape, another for each number.
platform::UIImage samplePicture(int number, platform::CGSize size);
// Files of landscapes, made when they are first asked for. Empty where they cannot be written.
const std::vector<platform::LibraryFile>& sampleLibrary();
// A film of six seconds, likewise.
const std::optional<platform::URL>& sampleFilm();

} // namespace gallery
