// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

// A set of corners of a rectangle, combined with |. The raw values are the platform's.
enum class UIRectCorner : unsigned {
    none = 0,
    topLeft = 1,
    topRight = 2,
    bottomLeft = 4,
    bottomRight = 8,
    allCorners = 15
};

constexpr UIRectCorner operator|(UIRectCorner a, UIRectCorner b)
{
    return static_cast<UIRectCorner>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
constexpr UIRectCorner operator&(UIRectCorner a, UIRectCorner b)
{
    return static_cast<UIRectCorner>(static_cast<unsigned>(a) & static_cast<unsigned>(b));
}
constexpr bool contains(UIRectCorner set, UIRectCorner corner)
{
    return (set & corner) == corner;
}

} // namespace platform
