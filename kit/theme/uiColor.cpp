// SPDX-License-Identifier: MIT
#include "kit/theme/uiColor.h"

namespace zelk {

std::optional<platform::UIColor> uiColor(const platform::Color& color)
{
    auto plain = color.cgColor();
    return plain ? std::optional(platform::UIColor(*plain)) : std::nullopt;
}

} // namespace zelk
