// SPDX-License-Identifier: MIT
#include "kit/ui/ZelkNavigationView.h"
#include "kit/ui/ZelkScrollView.h"
#include "platform/swiftui/swiftui.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace zelk;
using harness::ViewHarness;
using Role = AccessibilityRole;

template <class Root>
void show(ViewHarness& harness, Root root)
{
    harness.show(std::make_shared<UIHostingController<Root>>(std::move(root)));
    harness.settle();
}

UIScrollView& scrollViewOf(ViewHarness& harness)
{
    return static_cast<UIScrollView&>(harness.find(Role::scrollArea).view());
}

TEST(ZelkScrollView, ShowsIndicatorsWhereTheSystemIsNamedAndAddsNoPadding)
{
    const auto both = AxisSet::both, vertical = AxisSet::vertical, horizontal = AxisSet::horizontal;
    const std::tuple<const char*, AxisSet, ScrollViewIndicators, bool, bool> cases[] = {
        {"all", both, ScrollViewIndicators::all, true, true},
        {"this system", both, ScrollViewIndicators::iOS, true, true},
        {"the other system", both, ScrollViewIndicators::macCatalyst, false, false},
        {"none", both, {}, false, false},
        {"one axis", vertical, ScrollViewIndicators::all, false, true},
        {"the other axis", horizontal, ScrollViewIndicators::all, true, false},
    };
    for (const auto& [name, axes, indicators, onX, onY] : cases) {
        SCOPED_TRACE(name);
        ViewHarness harness({100, 100});
        show(harness, ZelkScrollView{{.axes = axes, .indicators = indicators}, [] {
                                         return Color{} | frame({.width = 300, .height = 250});
                                     }});
        const auto& view = scrollViewOf(harness);
        EXPECT_EQ(view.showsHorizontalScrollIndicator(), onX);
        EXPECT_EQ(view.showsVerticalScrollIndicator(), onY);
        EXPECT_EQ(view.contentSize().height, axes.contains(vertical) ? 250 : 100);
    }
}

TEST(ZelkScrollView, ShowsAndIsTouchedOutsideOfItselfUnlessItClips)
{
    for (const bool clips : {false, true}) {
        SCOPED_TRACE(clips);
        ViewHarness harness({200, 200});
        int taps = 0;
        const auto content = [&taps] {
            return Button{[&taps] { ++taps; }, Color{UIColor::red()} | frame({.width = 40, .height = 300})};
        };
        show(harness,
             Color{UIColor::white()}
                 | overlay(ZelkScrollView{{.clipsToBounds = clips}, content}
                           | frame({.width = 100, .height = 100})));
        EXPECT_EQ(scrollViewOf(harness).clipsToBounds(), clips);
        EXPECT_EQ(harness::colorAt(harness.snapshot(), {100, 170}) == "ffffff", clips);
        harness.tap({100, 170}); // below the view, on what it shows there
        EXPECT_EQ(taps, clips ? 0 : 1);
        harness.tap({140, 170}); // beside that, where nothing is
        EXPECT_EQ(taps, clips ? 0 : 1);
    }
}

TEST(ZelkNavigationView, StandsInOneColumnHoweverWideItIs)
{
    ViewHarness harness({1200, 300});
    show(harness, ZelkNavigationView{[] { return Text{"root"} | navigationTitle("Title"); }});
    EXPECT_NEAR(harness.find(Role::header, "Title").frame().midX(), 600, 1);
    EXPECT_EQ(harness.find(Role::staticText, "root").frame().midX(), 600);
}

} // namespace
