// SPDX-License-Identifier: MIT
#include "platform/swiftui/swiftui.h"
#include "tests/support/harness/DeclarativeHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using harness::DeclarativeHarness;

// The inner reader is described during a layout, before the group around it stands in the window.
TEST(GeometryReader, inside_of_a_group_that_another_describes_knows_its_place_in_the_window)
{
    auto frame = std::make_shared<CGRect>();
    auto inner = [frame](const GeometryProxy& proxy) {
        *frame = proxy.globalFrame;
        return Text{"Inside"};
    };
    auto outer = [inner](const GeometryProxy& proxy) {
        return GeometryReader{inner} | cornerRadius(8) | padding(20)
            | platform::frame({.width = proxy.size.width, .height = proxy.size.height});
    };
    DeclarativeHarness harness({320, 200});
    harness.show(GeometryReader{outer});
    EXPECT_EQ(*frame, CGRect::make(20, 20, 280, 160));
}

} // namespace
