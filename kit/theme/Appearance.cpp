// SPDX-License-Identifier: MIT
#include "kit/theme/Appearance.h"

#include "kit/foundation/zelkKitLocalized.h"

namespace zelk {

std::optional<Appearance> appearanceFromRawValue(std::int64_t rawValue)
{
    for (auto appearance : allCases({})) {
        if (zelk::rawValue(appearance) == rawValue)
            return appearance;
    }
    return std::nullopt;
}

std::string description(Appearance appearance)
{
    switch (appearance) {
    case Appearance::light:
        return zelkKitLocalized("APPEARANCE_LIGHT");
    case Appearance::dark:
        return zelkKitLocalized("APPEARANCE_DARK");
    case Appearance::system:
        break;
    }
    return zelkKitLocalized("APPEARANCE_SYSTEM");
}

std::optional<platform::ColorScheme> colorScheme(Appearance appearance)
{
    switch (appearance) {
    case Appearance::light:
        return platform::ColorScheme::light;
    case Appearance::dark:
        return platform::ColorScheme::dark;
    case Appearance::system:
        break;
    }
    return std::nullopt;
}

} // namespace zelk
