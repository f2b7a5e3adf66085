// SPDX-License-Identifier: MIT
#include "platform/swiftui/ScrollView.h"

#include "platform/swiftui/Color.h"
#include "platform/swiftui/frame.h"
#include "platform/uikit/UIScrollView.h"
#include "tests/platform/swiftui/probes.h"
#include "tests/support/harness/Element.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;

TEST(ScrollView, keeps_its_distance_from_where_reading_begins)
{
    for (auto direction :
         {UIUserInterfaceLayoutDirection::leftToRight, UIUserInterfaceLayoutDirection::rightToLeft}) {
        auto isMirrored = direction == UIUserInterfaceLayoutDirection::rightToLeft;
        SCOPED_TRACE(isMirrored);
        UITraitCollection traits;
        traits.layoutDirection = direction;
        harness::ViewHarness harness({100, 50}, traits);
        auto width = probes::makeHandle<CGFloat>();
        harness.show(probes::host(probes::stateful(width, 400.0, [](CGFloat wide) {
            return ScrollView{{.axes = AxisSet::horizontal}, Color{} | frame({.width = wide, .height = 20})};
        })));
        harness.settle();
        auto& view = static_cast<UIScrollView&>(harness.find(AccessibilityRole::scrollArea).view());
        auto fromStart = [&] {
            auto x = view.contentOffset().x;
            return isMirrored ? view.contentSize().width - x - 100 : x;
        };
        EXPECT_EQ(fromStart(), 0);
        view.setContentOffset({isMirrored ? 250.0 : 50.0, 0});
        for (CGFloat wide : {700.0, 300.0}) {
            (*width)->set(wide);
            harness.settle();
            EXPECT_EQ(fromStart(), 50);
        }
        (*width)->set(80);
        harness.settle();
        EXPECT_EQ(view.contentOffset().x, 0);
    }
}

TEST(ScrollView, stands_content_without_end)
{
    constexpr auto infinity = std::numeric_limits<CGFloat>::infinity();
    for (auto axes : {AxisSet::vertical, AxisSet::horizontal, AxisSet::both}) {
        harness::ViewHarness harness({100, 50});
        harness.show(probes::host(ScrollView{{.axes = axes}, probes::Leaf("endless", {infinity, infinity})}));
        harness.settle();
        auto& view = static_cast<UIScrollView&>(harness.find(AccessibilityRole::scrollArea).view());
        EXPECT_EQ(view.contentSize(), (CGSize{100, 50}));
    }
}

} // namespace
