// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace platform {

// What the pickers themselves say.
enum class MediaPickerText {
    library,
    all,
    photos,
    videos,
    noMedia,
    noCamera,
    fonts,
    search,
    recent,
    noFonts,
    beginning,
    end,
    position,
    play,
    moveAndScale,
    choose,
    zoom
};

// In the language of the user's that comes first of those known here; English when none is. Any thread.
const std::string& mediaPickerText(MediaPickerText text);

} // namespace platform
