// SPDX-License-Identifier: MIT
#include "kit/ui/selfSizingBottomSheet.h"
#include "platform/swiftui/swiftui.h"
#include "tests/support/harness/DeclarativeHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using Role = AccessibilityRole;

constexpr CGFloat aboveContent = 20; // of the sheet, for its bar

struct Block {
    std::shared_ptr<StateCell<CGFloat>> height;
    Binding<CGFloat> binding{height};
    auto dynamicProperties() { return std::tie(binding); }
    auto body() const { return Color{UIColor::red()} | frame({.height = binding.get()}); }
};

TEST(SelfSizingBottomSheet, is_as_high_as_its_content)
{
    struct Case {
        const char* name;
        CGFloat content, sheet;
        UIEdgeInsets safeArea = {};
    };
    const Case cases[] = {
        {"some", 100, 100 + aboveContent},
        {"over a safe area", 100, 100 + aboveContent + 34, {.top = 0, .left = 0, .bottom = 34, .right = 0}},
        {"none", 0, aboveContent},
        {"more than there is room for", 4000, 480},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        harness::DeclarativeHarness harness({320, 480});
        harness.window().setBaseSafeAreaInsets(each.safeArea);
        auto shown = std::make_shared<StateCell<bool>>(false);
        auto height = std::make_shared<StateCell<CGFloat>>(each.content);
        harness.show(Color{UIColor::white()} | zelk::selfSizingBottomSheet(Binding(shown), [height] {
                         return VStack{{.spacing = 0}, Block{height}, Text{"End"} | frame({.height = 0})};
                     }));
        harness.settle();
        shown->set(true);
        harness.advance(1s);
        auto frame = harness.find(Role::dialog).frame();
        EXPECT_EQ(frame.height(), each.sheet);
        EXPECT_EQ(frame.maxY(), 480);
        EXPECT_EQ(harness.find(Role::staticText, "End").frame().midY(),
                  frame.minY() + aboveContent + each.content)
            << "all of it has room";
        height->set(50);
        harness.advance(60ms);
        auto seen = harness.find(Role::dialog).view().presentationFrame().height();
        if (each.content == 100) {
            EXPECT_LT(seen, each.sheet);
            EXPECT_GT(seen, each.sheet - 50) << "it shrinks smoothly";
        }
        harness.advance(1s);
        EXPECT_EQ(harness.find(Role::dialog).frame().height(), 50 + aboveContent + each.safeArea.bottom);
    }
}

TEST(SizeReader, tells_each_size_once_and_comes_to_rest)
{
    harness::DeclarativeHarness harness({320, 480});
    auto height = std::make_shared<StateCell<CGFloat>>(10);
    std::vector<CGFloat> told;
    harness.show(Block{height} | zelk::readSize([&](CGSize size) {
                     told.push_back(size.height);
                     if (size.height < 40) // changes what is measured, in the middle of the frame
                         height->set(size.height + 10);
                 }));
    harness.settle();
    EXPECT_EQ(told, (std::vector<CGFloat>{10, 20, 30, 40}));
    height->set(std::numeric_limits<CGFloat>::quiet_NaN());
    harness.settle();
    EXPECT_EQ(told, (std::vector<CGFloat>{10, 20, 30, 40, 0, 10, 20, 30, 40}));
}

} // namespace
