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
    auto stops = [](std::vector<double> alphas) {
        std::vector<UIColor> colors;
        for (auto alpha : alphas)
            colors.push_back(UIColor::gray(0, alpha));
        return LinearGradient::ofColors(colors, {0.1, 0}, {0.8, 1});
    };
    auto content = [] {
        return Text{"Masked"} | padding(10) | background(Circle{} | fill(UIColor::systemRed()))
            | frame({.width = 80.5, .height = 60.25});
    };
    const struct {
        const char* name;
        std::function<AnyView(bool isSimple)> describe;
    } cases[]{
        {"dim, bright, dim",
         [&](bool simple) {
             auto gradient = stops({0.3, 1, 0.3});
             return simple ? AnyView{content() | mask(gradient)}
                           : AnyView{content() | mask(gradient | clipped())};
         }},
        {"no colours at all",
         [&](bool simple) {
             auto gradient = stops({});
             return simple ? AnyView{content() | mask(gradient)}
                           : AnyView{content() | mask(gradient | clipped())};
         }},
        {"both ends in one place",
         [&](bool simple) {
             auto gradient = stops({1, 0.5});
             gradient.endPoint = gradient.startPoint;
             return simple ? AnyView{content() | mask(gradient)}
                           : AnyView{content() | mask(gradient | clipped())};
         }},
        {"smaller than the content",
         [&](bool simple) {
             auto gradient = stops({1, 0}) | frame({.width = 40, .height = 30});
             return simple ? AnyView{content() | mask(gradient)}
                           : AnyView{content() | mask(gradient | clipped())};
         }},
        {"aside, turned and faded",
         [&](bool simple) {
             auto gradient = stops({0, 1}) | rotationEffect(Angle{0.4}) | scaleEffect(1.8);
             auto place = [](auto masked) {
                 return AnyView{masked | opacity(0.7) | rotationEffect(Angle{0.2}) | offset({.x = 7.3})};
             };
             return simple ? place(content() | mask(gradient))
                           : place(content() | mask(gradient | clipShape(Rectangle{})));
         }},
    };
    for (auto scale : {1.0, 2.0, 1.5}) {
        for (auto& each : cases) {
            auto picture = [&](bool isSimple) {
                harness::DeclarativeHarness harness({120, 120}, {.displayScale = scale});
                harness.show(each.describe(isSimple));
                return harness.snapshot();
            };
            EXPECT_LT(harness::differenceOf(picture(true), picture(false), 6), 0.01)
                << each.name << " at " << scale;
        }
    }
}

} // namespace
