// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/FloatingPointRoundingRule.h"
#include "platform/graphics/Geometry.h"

namespace zelk {

// Width and height each by the rule.
inline platform::CGSize rounded(platform::CGSize size, platform::FloatingPointRoundingRule rule)
{
    return {platform::rounded(size.width, rule), platform::rounded(size.height, rule)};
}

} // namespace zelk
