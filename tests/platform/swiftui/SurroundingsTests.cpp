// SPDX-License-Identifier: MIT
#include "platform/swiftui/swiftui.h"
#include "tests/support/harness/DeclarativeHarness.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

using Style = UIUserInterfaceStyle;

// Says what reaches it.
struct Reader {
    std::shared_ptr<std::vector<UIColor>> tints;
    Environment<TintKey> tint;
    Environment<ColorSchemeKey> scheme;

    auto dynamicProperties() { return std::tie(tint, scheme); }
    auto body() const
    {
        tints->push_back(tint->value_or(UIColor::clear()));
        return Text{*scheme == ColorScheme::dark ? "dark" : "light"};
    }
};

struct Stage {
    State<std::optional<ColorScheme>> outer, inner;
    State<bool> showsInner = true;
    std::shared_ptr<std::vector<UIColor>> tints = std::make_shared<std::vector<UIColor>>();

    auto dynamicProperties() { return std::tie(outer, inner, showsInner); }
    auto body() const
    {
        return VStack{when(*showsInner, [&] { return Reader{tints} | preferredColorScheme(*inner); }),
                      Button{"Outer", [outer = outer.binding()] { outer.set(ColorScheme::light); }},
                      Button{"Inner", [inner = inner.binding()] { inner.set(ColorScheme::dark); }},
                      Button{"None", [outer = outer.binding()] { outer.set(std::nullopt); }},
                      Button{"Leave", [shows = showsInner.binding()] { shows.set(false); }}}
        | preferredColorScheme(*outer);
    }
};

TEST(SurroundingsTests, theWindowsTintReachesViewsUnlessTheyHaveTheirOwn)
{
    harness::DeclarativeHarness harness;
    harness.window().setTintColor(UIColor::red());
    auto tints = std::make_shared<std::vector<UIColor>>(), own = std::make_shared<std::vector<UIColor>>();
    struct Root {
        std::shared_ptr<std::vector<UIColor>> tints, own;
        auto body() const
        {
            return VStack{Reader{tints}, Reader{own} | tint(UIColor::blue()), Button{"Press", [] { }}};
        }
    };
    harness.show(Root{tints, own});
    harness.settle();
    EXPECT_EQ(tints->back(), UIColor::red());
    harness.window().setTintColor(UIColor::green());
    harness.settle();
    EXPECT_EQ(tints->back(), UIColor::green());
    EXPECT_EQ(own->size(), 1U) << "who has another tint is not evaluated again";
    EXPECT_EQ(harness.find("Press").tintColor(), UIColor::green());
}

TEST(SurroundingsTests, aPreferredColorSchemeTurnsTheWindowUntilNobodyPrefersIt)
{
    harness::DeclarativeHarness harness;
    harness.show(Stage{});
    auto& window = harness.window();
    struct Step {
        std::string_view button;
        Style style, override;
    };
    constexpr Step steps[]{
        {"Inner", Style::dark, Style::dark},
        {"Outer", Style::light, Style::light}, // the outermost wish holds
        {"None", Style::dark, Style::dark},    // which wishes no more
        {"Leave", Style::light, Style::unspecified},
    };
    for (const auto& step : steps) {
        harness.tap(step.button);
        harness.settle();
        EXPECT_EQ(window.traitCollection().userInterfaceStyle, step.style) << step.button;
        EXPECT_EQ(window.overrideUserInterfaceStyle(), step.override) << step.button;
        if (step.button != "Leave")
            harness.find(step.style == Style::dark ? "dark"
                                                   : "light"); // ends the program when it is not there
    }
}

TEST(SurroundingsTests, aPageInsideFollowsTheWindowsStyle)
{
    struct Root {
        std::shared_ptr<std::vector<UIColor>> tints = std::make_shared<std::vector<UIColor>>();
        auto body() const { return NavigationView{Reader{tints}}; }
    };
    harness::DeclarativeHarness harness;
    harness.show(Root{});
    harness.find("light"); // ends the program when it is not there
    harness.window().setBaseTraits({.userInterfaceStyle = Style::dark});
    harness.settle();
    harness.find("dark");
}

TEST(SurroundingsTests, aPreferredColorSchemeGoesWhereItsControllerGoes)
{
    auto content = Color{UIColor::systemBackground()} | preferredColorScheme(ColorScheme::dark);
    auto controller = std::make_shared<UIHostingController<decltype(content)>>(content);
    {
        harness::DeclarativeHarness harness;
        harness.show(controller);
        EXPECT_EQ(harness::colorAt(harness.snapshot(), {10, 10}), "000000");
        harness.window().setRootViewController(nullptr);
        EXPECT_EQ(harness.window().overrideUserInterfaceStyle(), Style::unspecified);
    }
    harness::DeclarativeHarness harness;
    auto parent = std::make_shared<UIViewController>();
    harness.show(parent);
    parent->addChild(controller);
    parent->view()->addSubview(controller->view());
    EXPECT_EQ(harness.window().overrideUserInterfaceStyle(), Style::unspecified) << "it is not the root";
    EXPECT_EQ(controller->view()->traitCollection().userInterfaceStyle, Style::dark);
}

} // namespace
} // namespace platform
