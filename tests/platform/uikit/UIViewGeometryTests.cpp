// SPDX-License-Identifier: MIT
#include "platform/uikit/UIView.h"

#include "tests/support/harness/ViewHarness.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace {

using namespace platform;
using harness::ViewHarness;

std::shared_ptr<UIView> viewAt(CGFloat x, CGFloat y, CGFloat width, CGFloat height)
{
    return std::make_shared<UIView>(CGRect::make(x, y, width, height));
}

void expectNear(const CGRect& actual, const CGRect& expected)
{
    EXPECT_NEAR(actual.minX(), expected.minX(), 1e-9);
    EXPECT_NEAR(actual.minY(), expected.minY(), 1e-9);
    EXPECT_NEAR(actual.width(), expected.width(), 1e-9);
    EXPECT_NEAR(actual.height(), expected.height(), 1e-9);
}

TEST(UIViewGeometry, gives_the_upright_box_of_a_transformed_view_as_its_frame)
{
    constexpr auto quarter = std::numbers::pi / 2;
    const std::tuple<std::string_view, CGAffineTransform, CGRect> cases[] = {
        {"none", {}, CGRect::make(10, 20, 40, 20)},
        {"twice the size about the centre", CGAffineTransform::scale(2, 2), CGRect::make(-10, 10, 80, 40)},
        {"a quarter turn", CGAffineTransform::rotation(quarter), CGRect::make(20, 10, 20, 40)},
        {"moved", CGAffineTransform::translation(5, -5), CGRect::make(15, 15, 40, 20)},
        {"flat", CGAffineTransform::scale(1, 0), CGRect::make(10, 30, 40, 0)},
    };
    for (const auto& [name, transform, frame] : cases) {
        SCOPED_TRACE(name);
        auto view = viewAt(10, 20, 40, 20);
        view->setTransform(transform);
        expectNear(view->frame(), frame);
        EXPECT_EQ(view->bounds(), CGRect::make(0, 0, 40, 20));
    }
    auto view = viewAt(0, 0, 40, 20);
    view->setTransform(CGAffineTransform::rotation(quarter));
    view->setFrame(CGRect::make(100, 100, 30, 60));
    expectNear(view->frame(), CGRect::make(100, 100, 30, 60));
    expectNear(view->bounds(), CGRect::make(0, 0, 60, 30));
}

TEST(UIViewGeometry, converts_points_through_scrolled_and_transformed_superviews_and_back)
{
    ViewHarness harness;
    auto outer = viewAt(10, 10, 200, 200);
    auto scrolled = viewAt(20, 0, 100, 100);
    scrolled->setBounds(CGRect::make(0, 500, 100, 100));
    auto doubled = viewAt(0, 500, 50, 50);
    doubled->setTransform(CGAffineTransform::scale(2, 2)); // about its centre: covers (-25, 475) to (75, 575)
    auto root = std::make_shared<UIView>();
    root->addSubview(outer);
    outer->addSubview(scrolled);
    scrolled->addSubview(doubled);
    harness.show(root);

    CGPoint inside{10, 20};
    auto inWindow = doubled->convertTo(inside, nullptr);
    // scrolled: (-25 + 20, 475 + 40); minus the scroll and plus both frames: (-5 + 30, 515 - 500 + 10)
    EXPECT_EQ(inWindow, (CGPoint{25, 25}));
    EXPECT_EQ(doubled->convertFrom(inWindow, nullptr), inside);
    EXPECT_EQ(outer->convertFrom(inside, doubled.get()), (CGPoint{15, 15}));
    EXPECT_EQ(doubled->convertTo(CGRect::make(0, 0, 50, 50), nullptr), CGRect::make(5, -15, 100, 100));
}

TEST(UIViewGeometry, hits_the_front_most_view_that_takes_events)
{
    ViewHarness harness({200, 200});
    auto root = std::make_shared<UIView>();
    harness.show(root);
    auto back = viewAt(0, 0, 100, 100);
    auto front = viewAt(50, 50, 100, 100);
    auto outside = viewAt(90, 90, 100, 100); // in `front`, which does not clip: from (140, 140)
    front->addSubview(outside);
    root->setSubviews({back, front});

    using Act = std::function<void()>;
    const std::tuple<std::string_view, Act, CGPoint, std::shared_ptr<UIView>> cases[] = {
        {"the later sibling is in front", [] {}, {75, 75}, front},
        {"the right edge is outside", [] {}, {100, 10}, root},
        {"a child inside of its parent", [] {}, {145, 145}, outside},
        {"a child outside of its parent is not hit", [] {}, {170, 170}, root},
        {"z position counts before the order", [&] { back->setZPosition(1); }, {75, 75}, back},
        {"a hidden view is passed through", [&] { front->setHidden(true); }, {75, 75}, back},
        {"a nearly clear view is passed through", [&] { front->setAlpha(0.005); }, {75, 75}, back},
        {"a disabled view with its children",
         [&] { front->setUserInteractionEnabled(false); },
         {145, 145},
         root},
        {"a turned view is hit where it is seen",
         [&] { front->setTransform(CGAffineTransform::translation(-50, -50)); },
         {10, 10},
         front},
        {"a view seen from its edge cannot be hit",
         [&] { front->setTransform(CGAffineTransform::scale(0, 1)); },
         {75, 75},
         back},
    };
    for (const auto& [name, arrange, place, hit] : cases) {
        SCOPED_TRACE(name);
        arrange();
        EXPECT_EQ(harness.window().hitTest(place), hit);
        back->setZPosition(0);
        front->setHidden(false);
        front->setAlpha(1);
        front->setUserInteractionEnabled(true);
        front->setTransform({});
    }
}

TEST(UIViewGeometry, resizes_subviews_by_their_flexible_parts)
{
    using Flexible = UIViewAutoresizing;
    // A view at (10, 10, 80, 30) in (100, 50) that grows to (200, 100).
    constexpr auto left = Flexible::flexibleLeftMargin, right = Flexible::flexibleRightMargin;
    constexpr auto width = Flexible::flexibleWidth, height = Flexible::flexibleHeight;
    const std::tuple<std::string_view, unsigned, CGRect> cases[] = {
        {"nothing flexible stays", 0, CGRect::make(10, 10, 80, 30)},
        {"width and height take it all", width | height, CGRect::make(10, 10, 180, 80)},
        {"a left margin moves it right", left, CGRect::make(110, 10, 80, 30)},
        {"equal margins keep it in the middle", left | right, CGRect::make(60, 10, 80, 30)},
        {"parts share in proportion", Flexible::flexibleTopMargin | height, CGRect::make(10, 22.5, 80, 67.5)},
    };
    for (const auto& [name, mask, expected] : cases) {
        SCOPED_TRACE(name);
        auto parent = viewAt(0, 0, 100, 50);
        auto child = viewAt(10, 10, 80, 30);
        child->setAutoresizingMask({mask});
        parent->addSubview(child);
        parent->setFrame(CGRect::make(5, 5, 200, 100));
        expectNear(child->frame(), expected);
    }
    // A parent that was empty gives no proportion.
    auto parent = std::make_shared<UIView>();
    auto child = viewAt(0, 0, 0, 0);
    child->setAutoresizingMask({width | height});
    parent->addSubview(child);
    parent->setFrame(CGRect::make(0, 0, 300, 200));
    EXPECT_EQ(child->frame(), CGRect::make(0, 0, 300, 200));
}

TEST(UIViewGeometry, passes_on_what_the_windows_edges_cover)
{
    ViewHarness harness({100, 100});
    auto root = std::make_shared<UIView>();
    auto inner = viewAt(0, 10, 100, 85);
    root->addSubview(inner);
    harness.window().setBaseSafeAreaInsets({.top = 30, .left = 0, .bottom = 20, .right = 4});
    harness.show(root);
    EXPECT_EQ(root->safeAreaInsets(), (UIEdgeInsets{30, 0, 20, 4}));
    EXPECT_EQ(inner->safeAreaInsets(), (UIEdgeInsets{20, 0, 15, 4}));
    root->viewController()->setAdditionalSafeAreaInsets({.top = 5});
    EXPECT_EQ(inner->safeAreaInsets().top, 25);
    root->viewController()->setAdditionalSafeAreaInsets({});
    // The lower edge moves away from under it.
    harness.window().setFrameSize({100, 200});
    EXPECT_EQ(inner->safeAreaInsets(), (UIEdgeInsets{20, 0, 0, 4}));
}

TEST(UIViewGeometryDeathTest, refuses_numbers_that_are_none)
{
    auto view = std::make_shared<UIView>();
    EXPECT_DEATH(view->setFrame(CGRect::make(std::nan(""), 0, 1, 1)), "no finite number");
    EXPECT_DEATH(view->setCenter({0, std::numeric_limits<double>::infinity()}), "no finite number");
    EXPECT_DEATH(view->setTransform({.a = std::nan("")}), "no finite number");
    EXPECT_DEATH(view->setAlpha(std::nan("")), "no number");
    auto stranger = std::make_shared<UIView>();
    EXPECT_DEATH(view->convertTo(CGPoint{}, stranger.get()), "no common superview");
}

} // namespace
