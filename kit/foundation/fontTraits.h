// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIFontSymbolicTraits.h"

namespace zelk {

// The same font with these traits and no others; nothing when the system has no such variant. Main thread only.
inline std::optional<platform::UIFont> withTraits(const platform::UIFont& font,
                                                  platform::UIFontSymbolicTraits traits)
{
    return platform::fontWithSymbolicTraits(font, traits);
}
inline std::optional<platform::UIFont> regular(const platform::UIFont& font)
{
    return withTraits(font, platform::UIFontSymbolicTraits::none);
}
inline std::optional<platform::UIFont> bold(const platform::UIFont& font)
{
    return withTraits(font, platform::UIFontSymbolicTraits::bold);
}
inline std::optional<platform::UIFont> italic(const platform::UIFont& font)
{
    return withTraits(font, platform::UIFontSymbolicTraits::italic);
}

} // namespace zelk
