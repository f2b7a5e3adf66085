// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/CMTime.h"

namespace zelk {

// How long one frame lasts at that many a second.
constexpr platform::CMTime _30FPS()
{
    return {1, 30};
}
constexpr platform::CMTime _60FPS()
{
    return {1, 60};
}

} // namespace zelk
