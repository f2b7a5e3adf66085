// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

enum class HorizontalAlignment { leading, center, trailing };
enum class VerticalAlignment { top, center, bottom, firstTextBaseline, lastTextBaseline };

struct Alignment {
    HorizontalAlignment horizontal = HorizontalAlignment::center;
    VerticalAlignment vertical = VerticalAlignment::center;

    static constexpr Alignment center() { return {}; }
    static constexpr Alignment top() { return {HorizontalAlignment::center, VerticalAlignment::top}; }
    static constexpr Alignment bottom() { return {HorizontalAlignment::center, VerticalAlignment::bottom}; }
    static constexpr Alignment leading() { return {HorizontalAlignment::leading, VerticalAlignment::center}; }
    static constexpr Alignment trailing()
    {
        return {HorizontalAlignment::trailing, VerticalAlignment::center};
    }
    static constexpr Alignment topLeading() { return {HorizontalAlignment::leading, VerticalAlignment::top}; }
    static constexpr Alignment topTrailing()
    {
        return {HorizontalAlignment::trailing, VerticalAlignment::top};
    }
    static constexpr Alignment bottomLeading()
    {
        return {HorizontalAlignment::leading, VerticalAlignment::bottom};
    }
    static constexpr Alignment bottomTrailing()
    {
        return {HorizontalAlignment::trailing, VerticalAlignment::bottom};
    }
    bool operator==(const Alignment&) const = default;
};

} // namespace platform
