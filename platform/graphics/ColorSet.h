// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Result.h"
#include "platform/graphics/UIColor.h"

#include <string_view>

namespace platform {

// Reads one colour of an asset catalogue: the text of a `<name>.colorset/Contents.json`. Entries for any device count;
// an appearance that has none takes the nearest that has: normal contrast before another luminosity, and what is for
// any luminosity before nothing. Components are texts: "0.25" is a fraction, "64" and "0x40" are parts of 255. Colour spaces:
// srgb, extended-srgb, display-p3, gray-gamma-22. Gives a plain colour where all appearances have the same.
// Errors: fileReadCorruptFile; the failure reason says what is wrong. Any thread.
[[nodiscard]] Result<UIColor> parseColorSet(std::string_view json);

} // namespace platform
