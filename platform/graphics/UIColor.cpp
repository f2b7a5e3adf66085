// SPDX-License-Identifier: MIT
#include "platform/graphics/UIColor.h"

#include "platform/graphics/CGColor.h"
#include "platform/graphics/CurrentAppearance.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

UIColor rgb(int red, int green, int blue, double alpha = 1)
{
    return {red / 255.0, green / 255.0, blue / 255.0, alpha};
}

// Weighs each colour with its alpha, so that a transparent end adds none of its hue.
ColorComponents mixed(const ColorComponents& a, const ColorComponents& b, double fraction)
{
    auto alpha = a.alpha + (b.alpha - a.alpha) * fraction;
    auto weight = alpha > 0 ? b.alpha * fraction / alpha : fraction;
    auto mix = [weight](double from, double to) { return from + (to - from) * weight; };
    return {mix(a.red, b.red), mix(a.green, b.green), mix(a.blue, b.blue), alpha};
}

} // namespace

UIColor UIColor::ofFamily(const Family& family)
{
    UIColor color(family[0]);
    color.family_ = std::make_shared<const Family>(family);
    return color;
}

UIColor UIColor::dynamic(const UIColor& light, const UIColor& dark)
{
    return dynamic(light, dark, light, dark);
}

UIColor UIColor::dynamic(const UIColor& light, const UIColor& dark, const UIColor& lightHighContrast,
                         const UIColor& darkHighContrast)
{
    return ofFamily({light.components({}), dark.components({.isDark = true}),
                     lightHighContrast.components({.highContrast = true}),
                     darkHighContrast.components({.isDark = true, .highContrast = true})});
}

bool UIColor::getRed(double* red, double* green, double* blue, double* alpha) const
{
    if (pattern_)
        return false;
    auto& present = components(currentAppearance());
    auto write = [](double* place, double value) {
        if (place)
            *place = value;
    };
    write(red, present.red);
    write(green, present.green);
    write(blue, present.blue);
    write(alpha, present.alpha);
    return true;
}

UIColor UIColor::withAlphaComponent(double alpha) const
{
    if (pattern_)
        return patternWithAlpha(alpha);
    auto changed = [alpha](ColorComponents components) {
        components.alpha = alpha;
        return components;
    };
    if (!family_)
        return UIColor(changed(components_));
    auto family = *family_;
    for (auto& member : family)
        member = changed(member);
    return ofFamily(family);
}

UIColor UIColor::blended(const UIColor& other, double fraction) const
{
    // At either end it is that colour itself, which a pattern could not be mixed to.
    if (fraction <= 0)
        return *this;
    if (fraction >= 1)
        return other;
    if (!family_ && !other.family_)
        return UIColor(mixed(components_, other.components_, fraction));
    Family family;
    for (bool highContrast : {false, true}) {
        for (bool isDark : {false, true}) {
            ColorAppearance appearance{isDark, highContrast};
            family[indexOf(appearance)] =
                mixed(components(appearance), other.components(appearance), fraction);
        }
    }
    return ofFamily(family);
}

bool operator==(const UIColor& a, const UIColor& b)
{
    if (a.pattern_ || b.pattern_)
        return UIColor::isSamePattern(a, b);
    if (a.family_ == b.family_)
        return a.components_ == b.components_;
    return a.family_ && b.family_ && *a.family_ == *b.family_;
}

// Each is made once, at first use.
#define SEMANTIC_COLOR(name, ...)                                                                            \
    const UIColor& UIColor::name()                                                                           \
    {                                                                                                        \
        static const UIColor color = dynamic(__VA_ARGS__);                                                   \
        return color;                                                                                        \
    }

// In the order light, dark, light with high contrast, dark with high contrast.
SEMANTIC_COLOR(label, rgb(0, 0, 0), rgb(255, 255, 255))
SEMANTIC_COLOR(secondaryLabel, rgb(60, 60, 67, 0.6), rgb(235, 235, 245, 0.6), rgb(60, 60, 67, 0.8),
               rgb(235, 235, 245, 0.7))
SEMANTIC_COLOR(tertiaryLabel, rgb(60, 60, 67, 0.3), rgb(235, 235, 245, 0.3), rgb(60, 60, 67, 0.7),
               rgb(235, 235, 245, 0.55))
SEMANTIC_COLOR(quaternaryLabel, rgb(60, 60, 67, 0.18), rgb(235, 235, 245, 0.16), rgb(60, 60, 67, 0.55),
               rgb(235, 235, 245, 0.4))
SEMANTIC_COLOR(placeholderText, rgb(60, 60, 67, 0.3), rgb(235, 235, 245, 0.3), rgb(60, 60, 67, 0.7),
               rgb(235, 235, 245, 0.55))
SEMANTIC_COLOR(link, rgb(0, 122, 255), rgb(9, 132, 255), rgb(0, 64, 221), rgb(64, 156, 255))
SEMANTIC_COLOR(separator, rgb(60, 60, 67, 0.29), rgb(84, 84, 88, 0.6), rgb(60, 60, 67, 0.37),
               rgb(84, 84, 88, 0.65))
SEMANTIC_COLOR(opaqueSeparator, rgb(198, 198, 200), rgb(56, 56, 58))

SEMANTIC_COLOR(systemBackground, rgb(255, 255, 255), rgb(0, 0, 0))
SEMANTIC_COLOR(secondarySystemBackground, rgb(242, 242, 247), rgb(28, 28, 30), rgb(235, 235, 240),
               rgb(36, 36, 38))
SEMANTIC_COLOR(tertiarySystemBackground, rgb(255, 255, 255), rgb(44, 44, 46), rgb(255, 255, 255),
               rgb(54, 54, 56))
SEMANTIC_COLOR(systemGroupedBackground, rgb(242, 242, 247), rgb(0, 0, 0), rgb(235, 235, 240), rgb(0, 0, 0))
SEMANTIC_COLOR(secondarySystemGroupedBackground, rgb(255, 255, 255), rgb(28, 28, 30), rgb(255, 255, 255),
               rgb(36, 36, 38))
SEMANTIC_COLOR(tertiarySystemGroupedBackground, rgb(242, 242, 247), rgb(44, 44, 46), rgb(235, 235, 240),
               rgb(54, 54, 56))

SEMANTIC_COLOR(systemFill, rgb(120, 120, 128, 0.2), rgb(120, 120, 128, 0.36), rgb(120, 120, 128, 0.28),
               rgb(120, 120, 128, 0.44))
SEMANTIC_COLOR(secondarySystemFill, rgb(120, 120, 128, 0.16), rgb(120, 120, 128, 0.32),
               rgb(120, 120, 128, 0.24), rgb(120, 120, 128, 0.4))
SEMANTIC_COLOR(tertiarySystemFill, rgb(118, 118, 128, 0.12), rgb(118, 118, 128, 0.24),
               rgb(118, 118, 128, 0.2), rgb(118, 118, 128, 0.32))
SEMANTIC_COLOR(quaternarySystemFill, rgb(116, 116, 128, 0.08), rgb(118, 118, 128, 0.18),
               rgb(116, 116, 128, 0.16), rgb(118, 118, 128, 0.26))

SEMANTIC_COLOR(systemBlue, rgb(0, 122, 255), rgb(10, 132, 255), rgb(0, 64, 221), rgb(64, 156, 255))
SEMANTIC_COLOR(systemBrown, rgb(162, 132, 94), rgb(172, 142, 104), rgb(127, 101, 69), rgb(181, 148, 105))
SEMANTIC_COLOR(systemCyan, rgb(50, 173, 230), rgb(100, 210, 255), rgb(0, 113, 164), rgb(112, 215, 255))
SEMANTIC_COLOR(systemGreen, rgb(52, 199, 89), rgb(48, 209, 88), rgb(36, 138, 61), rgb(48, 219, 91))
SEMANTIC_COLOR(systemIndigo, rgb(88, 86, 214), rgb(94, 92, 230), rgb(54, 52, 163), rgb(125, 122, 255))
SEMANTIC_COLOR(systemMint, rgb(0, 199, 190), rgb(99, 230, 226), rgb(12, 129, 123), rgb(102, 212, 207))
SEMANTIC_COLOR(systemOrange, rgb(255, 149, 0), rgb(255, 159, 10), rgb(201, 52, 0), rgb(255, 179, 64))
SEMANTIC_COLOR(systemPink, rgb(255, 45, 85), rgb(255, 55, 95), rgb(211, 15, 69), rgb(255, 100, 130))
SEMANTIC_COLOR(systemPurple, rgb(175, 82, 222), rgb(191, 90, 242), rgb(137, 68, 171), rgb(218, 143, 255))
SEMANTIC_COLOR(systemRed, rgb(255, 59, 48), rgb(255, 69, 58), rgb(215, 0, 21), rgb(255, 105, 97))
SEMANTIC_COLOR(systemTeal, rgb(48, 176, 199), rgb(64, 200, 224), rgb(0, 130, 153), rgb(93, 230, 255))
SEMANTIC_COLOR(systemYellow, rgb(255, 204, 0), rgb(255, 214, 10), rgb(178, 80, 0), rgb(255, 212, 38))
SEMANTIC_COLOR(systemGray, rgb(142, 142, 147), rgb(142, 142, 147), rgb(108, 108, 112), rgb(174, 174, 178))
SEMANTIC_COLOR(systemGray2, rgb(174, 174, 178), rgb(99, 99, 102), rgb(142, 142, 147), rgb(124, 124, 128))
SEMANTIC_COLOR(systemGray3, rgb(199, 199, 204), rgb(72, 72, 74), rgb(174, 174, 178), rgb(84, 84, 86))
SEMANTIC_COLOR(systemGray4, rgb(209, 209, 214), rgb(58, 58, 60), rgb(188, 188, 192), rgb(68, 68, 70))
SEMANTIC_COLOR(systemGray5, rgb(229, 229, 234), rgb(44, 44, 46), rgb(216, 216, 220), rgb(54, 54, 56))
SEMANTIC_COLOR(systemGray6, rgb(242, 242, 247), rgb(28, 28, 30), rgb(235, 235, 240), rgb(36, 36, 38))

#undef SEMANTIC_COLOR

} // namespace platform
