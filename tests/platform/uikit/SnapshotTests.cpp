// SPDX-License-Identifier: MIT
#include "platform/uikit/snapshot.h"

#include "platform/graphics/CGContext.h"
#include "platform/uikit/UIView.h"
#include "platform/uikit/UIViewController.h"
#include "platform/uikit/UIWindow.h"
#include "tests/support/harness/ViewHarness.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace platform;
using harness::colorAt;

std::shared_ptr<UIView> box(CGFloat x, CGFloat y, CGFloat width, CGFloat height, const UIColor& color)
{
    auto view = std::make_shared<UIView>(CGRect::make(x, y, width, height));
    view->setBackgroundColor(color);
    return view;
}

UIImage picture(const std::shared_ptr<UIView>& view, CGSize size = {100, 100}, double scale = 1)
{
    auto image = snapshot(*view, size, scale);
    EXPECT_TRUE(image.has_value());
    return image.value_or(UIImage());
}

TEST(Snapshot, has_the_exact_size_or_refuses_it)
{
    constexpr auto infinity = std::numeric_limits<double>::infinity();
    using Pixels = std::optional<std::pair<int, int>>;
    const std::tuple<std::string_view, CGSize, double, Pixels> cases[] = {
        {"one pixel a point", {30, 20}, 1, {{30, 20}}},
        {"two", {30, 20}, 2, {{60, 40}}},
        {"a part of a pixel counts as one", {30.1, 20}, 1, {{31, 20}}},
        {"a fractional scale", {10, 10}, 1.25, {{13, 13}}},
        {"the smallest", {0.1, 0.1}, 1, {{1, 1}}},
        {"empty", {0, 20}, 1, std::nullopt},
        {"negative", {-5, 20}, 1, std::nullopt},
        {"no number", {std::nan(""), 20}, 1, std::nullopt},
        {"infinite", {infinity, 20}, 1, std::nullopt},
        {"no scale", {10, 10}, 0, std::nullopt},
        {"infinite scale", {10, 10}, infinity, std::nullopt},
        {"more pixels than fit in memory", {1e6, 1e6}, 1, std::nullopt},
        {"more pixels than fit in a number", {1e300, 1e300}, 1e9, std::nullopt},
    };
    for (const auto& [name, size, scale, pixels] : cases) {
        SCOPED_TRACE(name);
        auto controller = std::make_shared<UIViewController>();
        auto image = snapshot(controller, {.size = size, .scale = scale});
        ASSERT_EQ(image.has_value(), pixels.has_value());
        EXPECT_EQ(controller->isViewLoaded(), pixels.has_value()) << "a refused picture leaves it alone";
        if (pixels) {
            EXPECT_EQ(std::pair(image->pixelWidth(), image->pixelHeight()), *pixels);
        }
    }
}

TEST(Snapshot, shows_the_controller_as_a_window_would_and_lets_it_go)
{
    class Subject : public UIViewController {
    public:
        void viewDidAppear(Animated) override
        {
            log += "appeared ";
            view()->addSubview(box(0, 0, 10, 10, UIColor::red())); // still in the picture
        }
        void viewDidDisappear(Animated) override { log += "disappeared "; }
        void viewDidLayoutSubviews() override { laidOut = view()->bounds().size; }
        std::string log;
        CGSize laidOut;
    };
    auto subject = std::make_shared<Subject>();
    auto image = snapshot(
        subject,
        {.size = {40, 30}, .scale = 2, .traits = {.userInterfaceStyle = UIUserInterfaceStyle::dark}});
    ASSERT_TRUE(image.has_value());
    EXPECT_EQ(subject->log, "appeared disappeared ");
    EXPECT_EQ(subject->laidOut, (CGSize{40, 30}));
    EXPECT_EQ(colorAt(*image, {5, 5}), "ff0000");
    auto background = UIColor::systemBackground().resolved({.isDark = true}).components();
    EXPECT_EQ(image->pixel(60, 50).components(), background);
    EXPECT_EQ(subject->view()->superview(), nullptr);
    EXPECT_EQ(subject->view()->traitCollection().displayScale, 2);
}

TEST(Snapshot, puts_a_half_clear_group_together_before_it_shows_through)
{
    auto root = box(0, 0, 100, 100, UIColor::white());
    auto group = std::make_shared<UIView>(CGRect::make(0, 0, 100, 100));
    // Two black boxes that overlap: seen one by one, the overlap would be darker.
    group->setSubviews({box(0, 0, 60, 60, UIColor::black()), box(40, 40, 60, 60, UIColor::black())});
    group->setAlpha(0.5);
    root->addSubview(group);
    auto image = picture(root);
    EXPECT_EQ(colorAt(image, {10, 10}), colorAt(image, {50, 50}));
    EXPECT_NEAR(image.pixel(50, 50).components().red, 0.5, 0.01);
    EXPECT_EQ(colorAt(image, {90, 10}), "ffffff");
}

TEST(Snapshot, clips_and_rounds_as_told)
{
    struct Case {
        std::string_view name;
        bool clips;
        CGFloat radius;
        UIRectCorner corners;
        std::string outside, corner,
            oppositeCorner; // of children that stick out; the two corners of the view
    };
    constexpr auto all = UIRectCorner::allCorners;
    const Case cases[] = {
        {"children show outside", false, 0, all, "0000ff", "ff0000", "ff0000"},
        {"clipped", true, 0, all, "ffffff", "ff0000", "ff0000"},
        {"rounded", false, 10, all, "0000ff", "ffffff", "ffffff"},
        {"one corner rounded", false, 10, UIRectCorner::topLeft, "0000ff", "ffffff", "ff0000"},
        {"rounded and clipped", true, 10, all, "ffffff", "ffffff", "ffffff"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        auto root = box(0, 0, 100, 100, UIColor::white());
        auto view = box(20, 20, 40, 40, UIColor::red());
        view->addSubview(box(10, 10, 60, 10, UIColor::blue()));
        if (test.clips)
            view->addSubview(box(30, 30, 30, 30, UIColor::red())); // in the corner
        view->setClipsToBounds(test.clips);
        view->setCornerRadius(test.radius);
        view->setMaskedCorners(test.corners);
        root->addSubview(view);
        auto image = picture(root);
        EXPECT_EQ(colorAt(image, {80, 35}), test.outside);
        EXPECT_EQ(colorAt(image, {21, 21}), test.corner);
        EXPECT_EQ(colorAt(image, {58, 58}), test.oppositeCorner);
        EXPECT_EQ(colorAt(image, {40, 50}), "ff0000");
    }
}

TEST(Snapshot, shows_a_masked_view_where_the_mask_is_opaque)
{
    auto root = box(0, 0, 100, 100, UIColor::white());
    auto view = box(10, 10, 80, 80, UIColor::red());
    view->addSubview(box(0, 0, 80, 80, UIColor::blue()));
    auto mask = std::make_shared<UIView>(CGRect::make(20, 0, 40, 80));
    mask->addSubview(box(0, 0, 20, 80, UIColor::green())); // any colour will do
    mask->addSubview(box(20, 0, 20, 80, UIColor::black().withAlphaComponent(0.5)));
    view->setMask(mask);
    root->addSubview(view);
    auto image = picture(root);
    EXPECT_EQ(colorAt(image, {15, 50}), "ffffff");
    EXPECT_EQ(colorAt(image, {40, 50}), "0000ff");
    EXPECT_NEAR(image.pixel(60, 50).components().red, 0.5, 0.01);
    EXPECT_EQ(colorAt(image, {80, 50}), "ffffff");
    mask->setHidden(true);
    EXPECT_EQ(colorAt(picture(root), {40, 50}), "ffffff");
}

TEST(Snapshot, paints_transformed_views_where_they_are_by_z_position)
{
    auto root = box(0, 0, 100, 100, UIColor::white());
    auto wide = box(30, 45, 40, 10, UIColor::red());
    wide->setTransform(CGAffineTransform::rotation(std::acos(-1.0) / 2));
    root->setSubviews({wide, box(40, 60, 20, 20, UIColor::green())});
    auto image = picture(root);
    EXPECT_EQ(colorAt(image, {50, 35}), "ff0000");
    EXPECT_EQ(colorAt(image, {35, 50}), "ffffff");
    EXPECT_EQ(colorAt(image, {50, 65}), "00ff00");
    wide->setZPosition(1);
    EXPECT_EQ(colorAt(picture(root), {50, 65}), "ff0000");
}

TEST(Snapshot, keeps_a_views_drawing_inside_of_its_bounds)
{
    class Splash : public UIView {
    public:
        using UIView::UIView;
        void draw(CGContext& context, CGRect) override
        {
            context.fill(CGRect::make(-1000, -1000, 9999, 9999), UIColor::red());
        }
    };
    auto root = box(0, 0, 100, 100, UIColor::white());
    root->addSubview(std::make_shared<Splash>(CGRect::make(20, 20, 20, 20)));
    auto image = picture(root);
    EXPECT_EQ(colorAt(image, {30, 30}), "ff0000");
    EXPECT_EQ(colorAt(image, {50, 50}), "ffffff");
    EXPECT_EQ(colorAt(image, {10, 30}), "ffffff");
}

TEST(Snapshot, paints_a_small_part_as_it_painted_the_whole)
{
    // A reference pair: one frame of everything, and many frames of a few points each.
    auto make = [] {
        auto root = box(0, 0, 60, 60, UIColor::white());
        auto group = box(5, 5, 40, 40, UIColor::red());
        group->setCornerRadius(12);
        group->setAlpha(0.7);
        group->addSubview(box(20, 20, 40, 8, UIColor::blue()));
        auto turned = box(20, 10, 20, 20, UIColor::green());
        turned->setTransform(CGAffineTransform::rotation(0.5));
        turned->setMask(box(0, 0, 10, 20, UIColor::black()));
        root->setSubviews({group, turned});
        return root;
    };
    auto whole = picture(make(), {60, 60}, 2);
    harness::ViewHarness harness({60, 60});
    harness.show(make());
    auto pieces = makeImage({60, 60}, 2, [&](CGContext& context) {
        for (int y = 0; y < 60; y += 7) {
            for (int x = 0; x < 60; x += 5)
                harness.window().paint(context, CGRect::make(x, y, 5, 7));
        }
    });
    ASSERT_TRUE(pieces.has_value());
    int different = 0;
    for (int y = 0; y < whole.pixelHeight(); ++y) {
        for (int x = 0; x < whole.pixelWidth(); ++x) {
            auto a = whole.pixel(x, y).components(), b = pieces->pixel(x, y).components();
            different += std::abs(a.red - b.red) > 0.02 || std::abs(a.green - b.green) > 0.02
                || std::abs(a.blue - b.blue) > 0.02;
        }
    }
    EXPECT_EQ(different, 0);
}

} // namespace
