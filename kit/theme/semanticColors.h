// SPDX-License-Identifier: MIT
#pragma once

#include "kit/theme/AnyColor.h"
#include "platform/foundation/Bundle.h"

#include <optional>
#include <string_view>

namespace zelk {

// The kit's colours, each read from the asset catalogue of the kit's bundle at its first use; the process stops when it
// is not there. Reading one for the first time is for any thread.

// Variables of the process that an application may set once, when it starts, on its main thread.
platform::UIColor& zelk_tintColor();
platform::UIColor& zelk_systemBackground();
platform::UIColor& zelk_secondarySystemBackground();
platform::UIColor& zelk_systemGroupedBackground();
platform::UIColor& zelk_secondarySystemGroupedBackground();

// What the variables above held when each of these was first read; they do not follow a later change, so the application
// sets its own colours before.
const platform::Color& tintColor();
const platform::Color& systemBackground();
const platform::Color& secondarySystemBackground();
const platform::Color& systemGroupedBackground();
const platform::Color& secondarySystemGroupedBackground();

// Constants.
template <AnyColor Type = platform::UIColor>
const Type& darkIndigo();
template <AnyColor Type = platform::UIColor>
const Type& lightIndigo();

template <>
const platform::UIColor& darkIndigo();
template <>
const platform::Color& darkIndigo();
template <>
const platform::UIColor& lightIndigo();
template <>
const platform::Color& lightIndigo();

// What an application sets: each colour that is given replaces the variable of its name, in the order of the list.
struct RegisteredColors {
    std::optional<platform::UIColor> tintColor = {};
    std::optional<platform::UIColor> darkIndigo = {};  // a constant stays: this one is ignored
    std::optional<platform::UIColor> lightIndigo = {}; // likewise
    std::optional<platform::UIColor> systemBackground = {};
    std::optional<platform::UIColor> secondarySystemBackground = {};
    std::optional<platform::UIColor> systemGroupedBackground = {};
    std::optional<platform::UIColor> secondarySystemGroupedBackground = {};
};
void registerColors(const RegisteredColors& colors);

// The colour of that name in `bundle`; stops the process when it is missing or damaged.
platform::UIColor requiredColor(std::string_view name, const platform::Bundle& bundle);

} // namespace zelk
