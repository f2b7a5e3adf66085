// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIColor.h"
#include "platform/graphics/UIFont.h"

#include <optional>

namespace platform {

enum class UIUserInterfaceStyle { unspecified, light, dark };
enum class UIAccessibilityContrast { normal, high };
enum class UIUserInterfaceLayoutDirection { leftToRight, rightToLeft };

// The surroundings that a view is shown in, as a value: inherited from the screen through window and
// superviews, overridden below.
struct UITraitCollection {
    UIUserInterfaceStyle userInterfaceStyle = UIUserInterfaceStyle::light;
    UIAccessibilityContrast accessibilityContrast = UIAccessibilityContrast::normal;
    UIUserInterfaceLayoutDirection layoutDirection = UIUserInterfaceLayoutDirection::leftToRight;
    UIContentSizeCategory preferredContentSizeCategory = UIContentSizeCategory::large;
    double textScale = 1;    // the desktop's text scaling factor, on top of the category
    double displayScale = 1; // pixels a point
    bool prefersReducedMotion = false;
    // What the desktop tints its controls with; the tint colour of views that inherit none.
    std::optional<ColorComponents> accentColor;

    ColorAppearance colorAppearance() const
    {
        return {.isDark = userInterfaceStyle == UIUserInterfaceStyle::dark,
                .highContrast = accessibilityContrast == UIAccessibilityContrast::high};
    }
    bool operator==(const UITraitCollection&) const = default;
};

} // namespace platform
