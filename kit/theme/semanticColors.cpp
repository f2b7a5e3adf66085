// SPDX-License-Identifier: MIT
#include "kit/theme/semanticColors.h"

#include "kit/foundation/ZelkKitBundle.h"
#include "platform/foundation/Precondition.h"

#include <string>

namespace zelk {

platform::UIColor requiredColor(std::string_view name, const platform::Bundle& bundle)
{
    auto color = platform::UIColor::named(name, bundle);
    platform::precondition(color.has_value(),
                           "the kit's asset catalogue has no colour named " + std::string(name));
    return *color;
}

namespace {

platform::UIColor kitColor(std::string_view name)
{
    return requiredColor(name, *zelkKitBundle());
}

} // namespace

#define VARIABLE_COLOR(name)                                                                                 \
    platform::UIColor& zelk_##name()                                                                         \
    {                                                                                                        \
        static platform::UIColor color = kitColor(#name);                                                    \
        return color;                                                                                        \
    }                                                                                                        \
    const platform::Color& name()                                                                            \
    {                                                                                                        \
        static const platform::Color color{zelk_##name()};                                                   \
        return color;                                                                                        \
    }

VARIABLE_COLOR(tintColor)
VARIABLE_COLOR(systemBackground)
VARIABLE_COLOR(secondarySystemBackground)
VARIABLE_COLOR(systemGroupedBackground)
VARIABLE_COLOR(secondarySystemGroupedBackground)

#undef VARIABLE_COLOR

#define CONSTANT_COLOR(name)                                                                                 \
    template <>                                                                                              \
    const platform::UIColor& name()                                                                          \
    {                                                                                                        \
        static const platform::UIColor color = kitColor(#name);                                              \
        return color;                                                                                        \
    }                                                                                                        \
    template <>                                                                                              \
    const platform::Color& name()                                                                            \
    {                                                                                                        \
        static const platform::Color color{name<platform::UIColor>()};                                       \
        return color;                                                                                        \
    }

CONSTANT_COLOR(darkIndigo)
CONSTANT_COLOR(lightIndigo)

#undef CONSTANT_COLOR

void registerColors(const RegisteredColors& colors)
{
    // The variable is made even if it was never read, which is where a missing colour is found out.
    auto replace = [](const std::optional<platform::UIColor>& color, platform::UIColor& (*variable)()) {
        if (color)
            variable() = *color;
    };
    replace(colors.tintColor, zelk_tintColor);
    replace(colors.systemBackground, zelk_systemBackground);
    replace(colors.secondarySystemBackground, zelk_secondarySystemBackground);
    replace(colors.systemGroupedBackground, zelk_systemGroupedBackground);
    replace(colors.secondarySystemGroupedBackground, zelk_secondarySystemGroupedBackground);
}

} // namespace zelk
