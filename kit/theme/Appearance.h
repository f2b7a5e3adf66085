// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/EnvironmentValues.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace zelk {

// Whether an application is light or dark, or as the desktop is. Stored as its number.
enum class Appearance { system = 0, light = 1, dark = 2 };

constexpr int rawValue(Appearance appearance)
{
    return static_cast<int>(appearance);
}
constexpr std::array<Appearance, 3> allCases(Appearance)
{
    return {Appearance::system, Appearance::light, Appearance::dark};
}
// Nothing for a number that is none of theirs.
std::optional<Appearance> appearanceFromRawValue(std::int64_t rawValue);

// Its name in the user's language, for a choice on screen.
std::string description(Appearance appearance);

// Nothing to follow the desktop.
std::optional<platform::ColorScheme> colorScheme(Appearance appearance);

} // namespace zelk
