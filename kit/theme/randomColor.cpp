// SPDX-License-Identifier: MIT
#include "kit/theme/randomColor.h"

#include "platform/graphics/CGColor.h"

namespace zelk {

namespace {

constexpr std::uint64_t steps = 1ULL << 53; // between 0 and 1, all of which a double can tell apart

// Each in a statement of its own: arguments of one call are evaluated in no order.
template <class Draw>
platform::UIColor opaqueColor(const Draw& draw)
{
    auto red = draw();
    auto green = draw();
    auto blue = draw();
    return platform::UIColor(platform::CGColor::sRGB(red, green, blue));
}

} // namespace

template <>
platform::UIColor randomColor(platform::RandomNumberGenerator& generator)
{
    return opaqueColor([&] { return static_cast<double>(generator.next(steps + 1)) / steps; });
}

template <>
platform::Color randomColor(platform::RandomNumberGenerator& generator)
{
    // 53 bits never make 1, so there is nothing to draw again.
    return {opaqueColor([&] { return static_cast<double>(generator.next() & (steps - 1)) / steps; })};
}

} // namespace zelk
