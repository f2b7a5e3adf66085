// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

// The person's text-size setting, small to large; the platform's steps.
enum class UIContentSizeCategory {
    extraSmall,
    small,
    medium,
    large, // the default
    extraLarge,
    extraExtraLarge,
    extraExtraExtraLarge,
    accessibilityMedium,
    accessibilityLarge,
    accessibilityExtraLarge,
    accessibilityExtraExtraLarge,
    accessibilityExtraExtraExtraLarge
};

constexpr bool isAccessibilityCategory(UIContentSizeCategory category)
{
    return category >= UIContentSizeCategory::accessibilityMedium;
}

// One step larger or smaller; the last and the first stay.
constexpr UIContentSizeCategory larger(UIContentSizeCategory category)
{
    return category == UIContentSizeCategory::accessibilityExtraExtraExtraLarge
        ? category
        : static_cast<UIContentSizeCategory>(static_cast<int>(category) + 1);
}
constexpr UIContentSizeCategory smaller(UIContentSizeCategory category)
{
    return category == UIContentSizeCategory::extraSmall
        ? category
        : static_cast<UIContentSizeCategory>(static_cast<int>(category) - 1);
}

} // namespace platform
