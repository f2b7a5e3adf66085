// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/ExhibitView.h"

#include "apps/zelk-gallery/frame/CodeView.h"
#include "apps/zelk-gallery/frame/codeOf.h"

#include "kit/theme/CornerRadius.h"
#include "kit/theme/Spacing.h"
#include "kit/theme/semanticColors.h"
#include "platform/swiftui/swiftui.h"
#include "platform/uikit/UIPasteboard.h"

#include <limits>

namespace gallery {

using namespace platform;
using zelk::CornerRadius;
using zelk::Spacing;

namespace {

constexpr auto infinity = std::numeric_limits<CGFloat>::infinity();

auto card(const UIColor& color)
{
    auto shape = RoundedRectangle{CornerRadius::_200};
    return shape | fill(color) | overlay(shape | stroke(UIColor::separator().withAlphaComponent(0.12), 1));
}

struct CodeCard {
    std::string_view code;

    auto body() const
    {
        auto text = code;
        auto copy = Button{[text] { UIPasteboard::general().setString(String(std::string(text))); },
                           Text{"Copy"} | font(Font::caption().weight(FontWeight::medium))
                               | padding(EdgeSet::horizontal, Spacing::_100)
                               | padding(EdgeSet::vertical, Spacing::_50)
                               | background(Capsule{} | fill(UIColor::tertiarySystemFill()))};
        // In a window of its own direction: code reads from the left.
        return ScrollView{{.axes = AxisSet::horizontal}, CodeView{code} | padding(Spacing::_200)}
        | overlay(copy | padding(Spacing::_100), Alignment::topTrailing())
            | flexibleFrame({.maxWidth = infinity, .alignment = Alignment::topLeading()})
            | background(card(UIColor::dynamic({0.975, 0.975, 0.985}, {0.075, 0.075, 0.09})))
            | cornerRadius(CornerRadius::_200)
            | environment<LayoutDirectionKey>(LayoutDirection::leftToRight);
    }
    bool operator==(const CodeCard&) const = default;
};

struct LiveCard {
    AnyView view;

    auto body() const
    {
        return view | padding(Spacing::_250)
            | flexibleFrame({.maxWidth = infinity, .alignment = Alignment::center()})
            | background(card(zelk::zelk_secondarySystemGroupedBackground()))
            | cornerRadius(CornerRadius::_200);
    }
    bool operator==(const LiveCard&) const = default;
};

struct Heading {
    std::string title, note;

    auto body() const
    {
        auto text = note;
        return VStack{{.alignment = HorizontalAlignment::leading, .spacing = Spacing::_25},
                      Text{title} | font(Font::headline())
                          | accessibilityAddTraits(AccessibilityTraits::isHeader),
                      when(!text.empty(),
                           [&] {
                               return Text{text} | font(Font::subheadline())
                                   | foregroundColor(UIColor::secondaryLabel())
                                   | multilineTextAlignment(HorizontalAlignment::leading);
                           })}
        | padding(EdgeSet::horizontal, Spacing::_50);
    }
    bool operator==(const Heading&) const = default;
};

} // namespace

AnyView exhibitView(const std::string& page, const Exhibit& exhibit, CodePlace place)
{
    auto code = codeOf(page, exhibit.title);
    Heading heading{exhibit.title, exhibit.note};
    LiveCard live{exhibit.view};
    VStackOptions column{.alignment = HorizontalAlignment::leading, .spacing = Spacing::_100};
    switch (place) {
    case CodePlace::none:
        return AnyView(VStack{column, heading, live});
    case CodePlace::below:
        return AnyView(VStack{column, heading, live, CodeCard{code}});
    case CodePlace::beside:
        break;
    }
    return AnyView(VStack{
        column, heading,
        HStack{{.alignment = VerticalAlignment::top, .spacing = Spacing::_200}, live, CodeCard{code}}});
}

AnyView pageView(const Page& page, CGFloat width, CodePlace code)
{
    auto exhibits = page.exhibits();
    auto name = page.name;
    return AnyView(
        VStack{{.alignment = HorizontalAlignment::leading, .spacing = Spacing::_300},
               VStack{{.alignment = HorizontalAlignment::leading, .spacing = Spacing::_50},
                      Text{page.title} | font(Font::largeTitle().bold())
                          | accessibilityAddTraits(AccessibilityTraits::isHeader),
                      Text{page.summary} | font(Font::body()) | foregroundColor(UIColor::secondaryLabel())
                          | multilineTextAlignment(HorizontalAlignment::leading)}
                   | padding(EdgeSet::horizontal, Spacing::_50),
               ForEach{exhibits, &Exhibit::title,
                       [name, code](const Exhibit& each) { return exhibitView(name, each, code); }}}
        | padding(Spacing::_300) | frame({.width = width, .alignment = Alignment::topLeading()}));
}

} // namespace gallery
