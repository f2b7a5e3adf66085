// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string_view>

namespace platform {

class Bundle;
class CGColor;
class UIImage;

// What the surroundings ask of a dynamic colour.
struct ColorAppearance {
    bool isDark = false;
    bool highContrast = false;
    bool operator==(const ColorAppearance&) const = default;
};

// Components in sRGB, 0...1, not premultiplied. Values outside are kept here and clamped when painted.
struct ColorComponents {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;
    bool operator==(const ColorComponents&) const = default;
};

// A colour: four components, or a family of them from which the surroundings choose (light or dark,
// normal or high contrast), or a picture that tiles what is filled. A value; copies may cross threads.
class UIColor {
public:
    // Black, opaque.
    UIColor() = default;
    UIColor(double red, double green, double blue, double alpha = 1)
        : components_{red, green, blue, alpha}
    {
    }
    explicit UIColor(const ColorComponents& components)
        : components_(components)
    {
    }
    // In sRGB, components out of 0...1 included where its own space is the wider one.
    explicit UIColor(const CGColor& color);
    static UIColor gray(double white, double alpha = 1) { return {white, white, white, alpha}; }
    // Chooses by appearance. A dynamic argument contributes its own answer for that appearance.
    static UIColor dynamic(const UIColor& light, const UIColor& dark);
    static UIColor dynamic(const UIColor& light, const UIColor& dark, const UIColor& lightHighContrast,
                           const UIColor& darkHighContrast);

    // Tiles the picture from the origin of the coordinates that are filled in, and counts as the mean of its
    // pixels where one colour is needed (text, tints, blending). An empty picture is a clear pattern.
    static UIColor pattern(const UIImage& image);
    // The colour of that name in the bundle's asset catalogue (`Colors.xcassets` or `Assets.xcassets`, in source
    // form): one that chooses by appearance, or the choice for `compatibleWith`. Nothing when there is no such
    // colour, or when its file is damaged, which is logged. Reads the file each time.
    static std::optional<UIColor> named(std::string_view name, const Bundle& bundle,
                                        std::optional<ColorAppearance> compatibleWith = {});

    bool isDynamic() const { return family_ != nullptr; }
    // Null unless this is a pattern. Valid while the colour lives.
    const UIImage* patternImage() const { return pattern_.get(); }
    const ColorComponents& components(ColorAppearance appearance = {}) const
    {
        return family_ ? (*family_)[indexOf(appearance)] : components_;
    }
    // The components in the current appearance (see CurrentAppearance.h), where the pointer is not null. False, with
    // nothing written, for a colour that is not made of red, green and blue: a pattern.
    bool getRed(double* red, double* green, double* blue, double* alpha) const;
    // In the current appearance.
    CGColor cgColor() const;
    // The same colour with the choice made.
    UIColor resolved(ColorAppearance appearance) const
    {
        return family_ ? UIColor(components(appearance)) : *this;
    }
    // Every member of a family gets this alpha; a pattern's pixels are faded by it.
    UIColor withAlphaComponent(double alpha) const;
    // The colour a part of the way (0...1, clamped) to `other`, member by member, alpha weighing in.
    UIColor blended(const UIColor& other, double fraction) const;

    friend bool operator==(const UIColor& a, const UIColor& b);

    static UIColor clear() { return {0, 0, 0, 0}; }
    static UIColor black() { return {0, 0, 0}; }
    static UIColor white() { return {1, 1, 1}; }
    static UIColor red() { return {1, 0, 0}; }
    static UIColor green() { return {0, 1, 0}; }
    static UIColor blue() { return {0, 0, 1}; }

    // The platform's semantic colours; all dynamic.
    static const UIColor& label();
    static const UIColor& secondaryLabel();
    static const UIColor& tertiaryLabel();
    static const UIColor& quaternaryLabel();
    static const UIColor& placeholderText();
    static const UIColor& link();
    static const UIColor& separator();
    static const UIColor& opaqueSeparator();
    static const UIColor& systemBackground();
    static const UIColor& secondarySystemBackground();
    static const UIColor& tertiarySystemBackground();
    static const UIColor& systemGroupedBackground();
    static const UIColor& secondarySystemGroupedBackground();
    static const UIColor& tertiarySystemGroupedBackground();
    static const UIColor& systemFill();
    static const UIColor& secondarySystemFill();
    static const UIColor& tertiarySystemFill();
    static const UIColor& quaternarySystemFill();

    static const UIColor& systemBlue();
    static const UIColor& systemBrown();
    static const UIColor& systemCyan();
    static const UIColor& systemGreen();
    static const UIColor& systemIndigo();
    static const UIColor& systemMint();
    static const UIColor& systemOrange();
    static const UIColor& systemPink();
    static const UIColor& systemPurple();
    static const UIColor& systemRed();
    static const UIColor& systemTeal();
    static const UIColor& systemYellow();
    static const UIColor& systemGray();
    static const UIColor& systemGray2();
    static const UIColor& systemGray3();
    static const UIColor& systemGray4();
    static const UIColor& systemGray5();
    static const UIColor& systemGray6();

private:
    // light, dark, light high contrast, dark high contrast
    using Family = std::array<ColorComponents, 4>;

    static std::size_t indexOf(ColorAppearance appearance)
    {
        return (appearance.isDark ? 1 : 0) + (appearance.highContrast ? 2 : 0);
    }
    static UIColor ofFamily(const Family& family);
    UIColor patternWithAlpha(double alpha) const;
    static bool isSamePattern(const UIColor& a, const UIColor& b);

    ColorComponents components_;             // of a family: its first member; of a pattern: its mean
    std::shared_ptr<const Family> family_;   // null for a plain colour
    std::shared_ptr<const UIImage> pattern_; // null for all but patterns
};

} // namespace platform
