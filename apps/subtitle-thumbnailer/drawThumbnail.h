// SPDX-License-Identifier: MIT
#pragma once

#include "apps/subtitle-thumbnailer/FirstCues.h"
#include "platform/graphics/UIImage.h"

#include <span>

namespace thumbnail {

// How many cues the largest page has room for.
inline constexpr std::size_t mostCues = 16;

// A sheet of paper with the beginning of the text, `size` pixels square, transparent around the sheet.
// Errors: those of makeImage.
[[nodiscard]] platform::Result<platform::UIImage> drawThumbnail(std::span<const Cue> cues, int size);

} // namespace thumbnail
