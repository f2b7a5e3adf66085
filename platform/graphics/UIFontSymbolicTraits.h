// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIFont.h"

#include <optional>

namespace platform {

// How a font looks, as a set, combined with |.
enum class UIFontSymbolicTraits : unsigned { none = 0, italic = 1, bold = 2 };

constexpr UIFontSymbolicTraits operator|(UIFontSymbolicTraits a, UIFontSymbolicTraits b)
{
    return static_cast<UIFontSymbolicTraits>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
constexpr bool contains(UIFontSymbolicTraits set, UIFontSymbolicTraits trait)
{
    return (static_cast<unsigned>(set) & static_cast<unsigned>(trait)) == static_cast<unsigned>(trait);
}

// The font of that design and size with these traits and no others: an upright one of regular weight for none. Nothing
// when the family that the system has for it has no such face of its own (one that is slanted or thickened by machine is
// none). Main thread only.
std::optional<UIFont> fontWithSymbolicTraits(const UIFont& font, UIFontSymbolicTraits traits);

} // namespace platform
