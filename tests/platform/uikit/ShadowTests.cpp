// SPDX-License-Identifier: MIT
#include "platform/uikit/UIViewShadow.h"

#include "platform/graphics/CGContext.h"
#include "platform/uikit/UIView.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using harness::ViewHarness;

// A square of 40 points in the middle of 100 by 100 white ones.
struct Scene {
    ViewHarness harness{{100, 100}};
    std::shared_ptr<UIView> square = std::make_shared<UIView>(CGRect::make(30, 30, 40, 40));

    Scene()
    {
        auto page = std::make_shared<UIView>();
        page->setBackgroundColor(UIColor::white());
        page->addSubview(square);
        harness.show(page);
    }
    // How dark it is there, 0 to 1.
    double darkness(CGPoint place)
    {
        return 1 - std::stoi(harness::colorAt(harness.snapshot(), place).substr(0, 2), nullptr, 16) / 255.0;
    }
};

struct Outlined : UIView {
    using UIView::UIView;
    void draw(CGContext& context, CGRect) override
    {
        context.fill(UIBezierPath::rect(bounds()), UIColor::white());
    }
};

TEST(Shadow, lies_around_the_outline_softened_and_moved)
{
    // The same square as a background, which is stretched from a kept picture, and as something drawn, which is blurred.
    for (bool isDrawn : {false, true}) {
        for (double radius : {0.0, 2.0, 5.0, 12.0}) {
            SCOPED_TRACE(testing::Message() << (isDrawn ? "drawn, " : "a background, ") << radius);
            Scene scene;
            if (isDrawn)
                scene.square->addSubview(std::make_shared<Outlined>(CGRect::make(0, 0, 40, 40)));
            else
                scene.square->setBackgroundColor(UIColor::white());
            scene.square->setShadow(UIViewShadow{.opacity = 1, .radius = radius, .offset = {10, 0}});
            EXPECT_LT(scene.darkness({50, 50}), 0.01) << "behind the content";
            auto atEdge = scene.darkness({79, 50}), outside = scene.darkness({79 + radius * 1.7, 50}),
                 far = scene.darkness({std::min(81 + 3 * radius, 99.0), 50});
            EXPECT_NEAR(atEdge, radius == 0 ? 1 : 0.52, 0.1);
            EXPECT_NEAR(outside, radius > 0 ? 0.05 : 1, radius > 0 ? 0.05 : 0.01);
            EXPECT_LT(far, radius == 12 ? 0.08 : 0.02);
            EXPECT_EQ(scene.darkness({26, 50}) < 0.02, radius < 12) << "it was moved away from there";
        }
    }
}

TEST(Shadow, is_painted_anew_where_it_was_and_where_it_is)
{
    Scene scene;
    scene.square->setBackgroundColor(UIColor::white());
    scene.square->setClipsToBounds(true);
    scene.square->setCornerRadius(10);
    scene.square->setShadow(UIViewShadow{.opacity = 1, .radius = 3, .offset = {0, 5}});
    scene.harness.paintFrame();
    auto covers = [&](CGRect rect) {
        return std::ranges::any_of(scene.harness.paintFrame(),
                                   [&](auto& painted) { return painted.contains(rect); });
    };
    EXPECT_GT(scene.darkness({50, 74}), 0.3);
    scene.square->setCenter({50, 40});
    EXPECT_TRUE(covers(CGRect::make(22, 16, 56, 68)));
    scene.square->setAlpha(0.5);
    EXPECT_TRUE(covers(CGRect::make(22, 16, 56, 58)));
    EXPECT_GT(scene.darkness({50, 64}), 0.15) << "it fades with its view";
    scene.square->setShadow(std::nullopt);
    EXPECT_TRUE(covers(CGRect::make(22, 16, 56, 58)));
    EXPECT_EQ(scene.darkness({50, 64}), 0);
}

TEST(Shadow, of_impossible_numbers_is_none_or_as_wide_as_it_may_be)
{
    constexpr auto nan = std::numeric_limits<double>::quiet_NaN(),
                   infinite = std::numeric_limits<double>::infinity();
    const struct {
        UIViewShadow shadow;
        bool isSeen;
    } cases[]{{{.opacity = nan}, false},
              {{.opacity = -1}, false},
              {{.opacity = 1, .offset = {nan, 0}}, false},
              {{.opacity = 1, .offset = {0, infinite}}, false},
              {{.opacity = 1, .offset = {0, 1e12}}, false},
              {{.color = UIColor::clear(), .opacity = 1, .offset = {20, 0}}, false},
              {{.opacity = 5, .radius = nan, .offset = {20, 0}}, true},
              {{.opacity = 1, .radius = -3, .offset = {20, 0}}, true},
              {{.opacity = 1, .radius = infinite}, true}};
    for (auto& each : cases) {
        for (bool isDrawn : {false, true}) {
            Scene scene;
            scene.square->setBackgroundColor(isDrawn ? UIColor(1, 1, 1, 0.99) : UIColor::white());
            scene.square->setShadow(each.shadow);
            scene.harness.paintFrame();
            EXPECT_EQ(scene.darkness({80, 50}) > 0.01, each.isSeen) << &each - cases;
        }
    }
}

} // namespace
