// SPDX-License-Identifier: MIT
// A mask that is a gradient is painted in one step. It must look as any other mask does.
#include "platform/swiftui/LinearGradient.h"

#include "platform/swiftui/AnyView.h"
#include "platform/swiftui/Text.h"
#include "platform/swiftui/effects.h"
#include "platform/swiftui/environment.h"
#include "platform/swiftui/frame.h"
#include "platform/swiftui/layered.h"
#include "platform/swiftui/mask.h"
#include "platform/swiftui/padding.h"
#include "platform/swiftui/placement.h"
#include "platform/swiftui/shapes.h"
#include "tests/support/harness/DeclarativeHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;

TEST(GradientMask, looks_as_the_same_mask_with_a_picture_of_its_own)
{
    auto gradient = [](std::vector<double> alphas, UnitPoint end = {0.8, 1}) {
        std::vector<UIColor> colors;
        for (auto alpha : alphas)
            colors.push_back(UIColor::gray(0, alpha));
        return LinearGradient::ofColors(colors, {0.1, 0}, end);
    };
    auto content = Text{"Masked"} | padding(10) | background(Circle{} | fill(UIColor::systemRed()))
        | frame({.width = 80.5, .height = 60.25});
    struct Pair {
        AnyView simple, clipped; // the second is painted by itself first
    };
    auto masked = [&](auto mask) {
        return Pair{AnyView{content | platform::mask(mask)},
                    AnyView{content | platform::mask(mask | platform::clipped())}};
    };
    const struct {
        const char* name;
        Pair pair;
    } cases[]{{"dim, bright, dim", masked(gradient({0.3, 1, 0.3}))},
              {"no colours at all", masked(gradient({}))},
              {"both ends in one place", masked(gradient({1, 0.5}, {0.1, 0}))},
              {"smaller than the content", masked(gradient({1, 0}) | frame({.width = 40, .height = 30}))},
              {"turned", masked(gradient({0, 1}) | scaleEffect(1.8) | rotationEffect(Angle{0.4}))}};
    for (auto [scale, turn] : {std::pair{1.0, Angle{}}, {2.0, Angle{}}, {1.5, Angle{0.2}}}) {
        for (auto& each : cases) {
            auto picture = [&](bool isSimple) {
                harness::DeclarativeHarness harness({120, 120}, {.displayScale = scale});
                harness.show((isSimple ? each.pair.simple : each.pair.clipped) | opacity(0.7)
                             | rotationEffect(turn) | offset({.x = 7.3}));
                return harness.snapshot();
            };
            EXPECT_LT(harness::differenceOf(picture(true), picture(false), 6), 0.01)
                << each.name << " at " << scale;
        }
    }
}

} // namespace
