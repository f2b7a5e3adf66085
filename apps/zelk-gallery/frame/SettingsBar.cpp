// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/SettingsBar.h"

#include "apps/zelk-gallery/frame/GallerySettings.h"

#include "kit/theme/AnimationPreset.h"
#include "kit/theme/GridSize.h"
#include "kit/theme/Spacing.h"
#include "platform/swiftui/swiftui.h"

#include <functional>
#include <limits>
#include <ranges>

namespace gallery {

using namespace platform;
using zelk::GridSize;
using zelk::Spacing;

namespace {

// A small switch that says in words what it does and is filled while it is on.
struct Chip {
    std::string title, label;
    bool isOn = false;
    UIColor tint, onTint;
    std::function<void()> action;

    auto body() const
    {
        auto ground = isOn ? tint : UIColor::tertiarySystemFill();
        auto content = Text{title} | font(Font::footnote().weight(FontWeight::medium)) | lineLimit(1)
            | foregroundColor(isOn ? onTint : UIColor::label()) | padding(EdgeSet::horizontal, Spacing::_150)
            | padding(EdgeSet::vertical, Spacing::_75) | flexibleFrame({.minWidth = GridSize::_200})
            | background(Capsule{} | fill(ground));
        return Button{action, content} | accessibilityLabel(label)
            | accessibilityAddTraits(isOn ? AccessibilityTraits::isSelected : AccessibilityTraits{});
    }
};

struct TintDot {
    std::size_t index = 0;
    EnvironmentObject<GallerySettings> settings;

    auto dynamicProperties() { return std::tie(settings); }
    auto body() const
    {
        auto object = settings.object();
        const auto& [name, color] = tints()[index];
        auto isChosen = object->tint.get() == index;
        auto dot = Circle{} | fill(color) | padding(isChosen ? 4.5 : 3)
            | overlay(Circle{} | stroke(isChosen ? color : UIColor::clear(), 2) | padding(1))
            | frame({.width = GridSize::_150, .height = GridSize::_150}) | contentShape();
        return Button{[object, chosen = index] { object->tint.set(chosen); }, dot}
        | accessibilityLabel(name + " tint")
            | accessibilityAddTraits(isChosen ? AccessibilityTraits::isSelected : AccessibilityTraits{});
    }
    bool operator==(const TintDot&) const = default;
};

struct SettingsBar {
    BarWidth width;
    EnvironmentObject<GallerySettings> settings;
    Environment<ColorSchemeKey> scheme;

    auto dynamicProperties() { return std::tie(settings, scheme); }
    auto body() const
    {
        auto object = settings.object();
        auto color = object->tintColor(), onColor = object->colorOnTint();
        auto isDark = *scheme == ColorScheme::dark;
        auto resize = [object](int step) {
            return [object, step] {
                object->textSize.set(std::clamp(object->textSize.get() + step, GallerySettings::leastTextSize,
                                                GallerySettings::greatestTextSize));
            };
        };
        auto flip = [object](Published<bool> GallerySettings::* setting) {
            return [object, setting] { ((*object).*setting).set(!((*object).*setting).get()); };
        };
        auto dots = HStack{{.spacing = Spacing::_25},
                           ForEach{std::views::iota(std::size_t{0}, tints().size()), std::identity{},
                                   [](std::size_t index) { return TintDot{index, {}}; }}};
        auto pages =
            Chip{"Pages", "Pages", object->showsPages, color, onColor, flip(&GallerySettings::showsPages)};
        auto switches = HStack{
            {.spacing = Spacing::_100},
            when(width == BarWidth::narrow, [&] { return pages; }),
            dots,
            Chip{"A\u2212", "Smaller text", false, color, onColor, resize(-1)},
            Chip{"A+", "Larger text", false, color, onColor, resize(1)},
            Chip{"Dark", "Dark appearance", isDark, color, onColor,
                 [object, isDark] { object->isDark.set(!isDark); }},
            Chip{"Right to left", "Right to left", object->isRightToLeft, color, onColor,
                 flip(&GallerySettings::isRightToLeft)},
            Chip{"Less motion", "Less motion", object->reducesMotion, color, onColor,
                 flip(&GallerySettings::reducesMotion)},
            Chip{"Code", "Code", object->showsCode, color, onColor, flip(&GallerySettings::showsCode)}};
        return ScrollView{{.axes = AxisSet::horizontal, .showsIndicators = false},
                          switches | padding(EdgeSet::horizontal, Spacing::_300)}
        | frame({.height = GridSize::_350});
    }
    bool operator==(const SettingsBar&) const = default;
};

} // namespace

AnyView settingsBar(BarWidth width)
{
    return AnyView(SettingsBar{width, {}, {}});
}

} // namespace gallery
