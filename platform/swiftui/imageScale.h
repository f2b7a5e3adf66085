// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/SymbolImage.h"
#include "platform/swiftui/environment.h"

namespace platform {

// How large symbols are beside the text.
struct ImageScaleKey : environment_keys::Key<SymbolScale, SymbolScale::medium> { };

inline auto imageScale(SymbolScale scale)
{
    return environment<ImageScaleKey>(scale);
}

} // namespace platform
