// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIColor.h"
#include "platform/graphics/UIContentSizeCategory.h"
#include "platform/swiftui/Alignment.h"
#include "platform/swiftui/Font.h"

#include <optional>

namespace platform {

// The keys of the environment that the layer itself writes and reads.

enum class ColorScheme { light, dark };
enum class LayoutDirection { leftToRight, rightToLeft };

namespace environment_keys {

// `Value` and its default.
template <class V, V defaultAt>
struct Key {
    using Value = V;
    static Value defaultValue() { return defaultAt; }
};
template <class V>
struct OptionalKey {
    using Value = std::optional<V>;
    static Value defaultValue() { return std::nullopt; }
};

} // namespace environment_keys

// Written by `font`; none: each view's own.
struct FontKey : environment_keys::OptionalKey<Font> { };
struct ForegroundColorKey : environment_keys::OptionalKey<UIColor> { };
struct TintKey : environment_keys::OptionalKey<UIColor> { };
struct ColorSchemeKey : environment_keys::Key<ColorScheme, ColorScheme::light> { };
struct LayoutDirectionKey : environment_keys::Key<LayoutDirection, LayoutDirection::leftToRight> { };
struct SizeCategoryKey : environment_keys::Key<UIContentSizeCategory, UIContentSizeCategory::large> { };
struct TextScaleKey : environment_keys::Key<double, 1.0> { }; // the desktop's, on top of the category
struct DisplayScaleKey : environment_keys::Key<double, 1.0> { };
struct IsEnabledKey : environment_keys::Key<bool, true> { };
struct AccessibilityHiddenKey : environment_keys::Key<bool, false> { };
struct ReduceMotionKey : environment_keys::Key<bool, false> { };
struct LineLimitKey : environment_keys::OptionalKey<int> { };
struct MultilineTextAlignmentKey : environment_keys::Key<HorizontalAlignment, HorizontalAlignment::leading> {
};

} // namespace platform
