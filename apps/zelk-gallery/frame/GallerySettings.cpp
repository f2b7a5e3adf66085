// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/GallerySettings.h"

#include "kit/theme/derivedColors.h"
#include "kit/theme/semanticColors.h"

#include <algorithm>

namespace gallery {

using namespace platform;

const std::vector<NamedTint>& tints()
{
    static const std::vector<NamedTint> list{{"Kit", zelk::zelk_tintColor()},
                                             {"Blue", UIColor::systemBlue()},
                                             {"Green", UIColor::systemGreen()},
                                             {"Orange", UIColor::systemOrange()},
                                             {"Pink", UIColor::systemPink()}};
    return list;
}

UIColor GallerySettings::tintColor() const
{
    return tints()[tint.get()].color;
}

UIColor GallerySettings::colorOnTint() const
{
    auto choose = [tint = tintColor()](bool inDark) {
        auto white = UIColor::white(), black = UIColor::black();
        return zelk::bestBackgroundColor(tint.resolved({.isDark = inDark}),
                                         {.threshold = 0.6, .bright = white, .dark = black});
    };
    return UIColor::dynamic(choose(false), choose(true));
}

UITraitCollection GallerySettings::traits(const UITraitCollection& desktop) const
{
    auto traits = desktop;
    if (isDark.get())
        traits.userInterfaceStyle = *isDark.get() ? UIUserInterfaceStyle::dark : UIUserInterfaceStyle::light;
    auto size = static_cast<int>(desktop.preferredContentSizeCategory) + textSize;
    traits.preferredContentSizeCategory = static_cast<UIContentSizeCategory>(
        std::clamp(size, static_cast<int>(UIContentSizeCategory::extraSmall),
                   static_cast<int>(UIContentSizeCategory::accessibilityExtraExtraExtraLarge)));
    if (isRightToLeft)
        traits.layoutDirection = UIUserInterfaceLayoutDirection::rightToLeft;
    traits.prefersReducedMotion = desktop.prefersReducedMotion || reducesMotion;
    return traits;
}

} // namespace gallery
