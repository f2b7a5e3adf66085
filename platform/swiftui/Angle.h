// SPDX-License-Identifier: MIT
#pragma once

#include <numbers>

namespace platform {

// A turn, clockwise on screen.
struct Angle {
    double radians = 0;

    static constexpr Angle degrees(double degrees) { return {degrees * std::numbers::pi / 180}; }
    double inDegrees() const { return radians * 180 / std::numbers::pi; }
    bool operator==(const Angle&) const = default;
};

} // namespace platform
