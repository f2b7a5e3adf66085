// SPDX-License-Identifier: MIT
#include "platform/swiftui/GroupNode.h"
#include "tests/platform/swiftui/probes.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace probes;
using harness::colorAt;
using harness::ViewHarness;

// A painted rectangle.
struct Paint : UIViewRepresentable<Paint> {
    explicit Paint(UIColor paint, std::string nameOfView = {}, std::optional<CGSize> wanted = {})
        : color(paint)
        , name(std::move(nameOfView))
        , size(wanted)
    {
    }
    UIColor color;
    std::string name;
    std::optional<CGSize> size;
    bool operator==(const Paint&) const = default;
    std::shared_ptr<UIView> makeUIView(const auto&) const { return std::make_shared<UIView>(); }
    void updateUIView(UIView& view, const auto&) const
    {
        view.setBackgroundColor(color);
        view.accessibility().identifier = name;
    }
    std::optional<CGSize> sizeThatFits(const ProposedSize& offer, UIView&) const
    {
        return size.value_or(offer.replacingUnspecified());
    }
};

struct Disc {
    UIBezierPath path(CGRect rect) const { return UIBezierPath::oval(rect); }
    bool operator==(const Disc&) const = default;
};

const auto red = UIColor(1, 0, 0);
const auto blue = UIColor(0, 0, 1);

UIView* hitAt(ViewHarness& harness, CGPoint place)
{
    return harness.window().hitTest(place).get();
}

TEST(Group, stands_at_its_contents_place_with_its_content_at_its_origin)
{
    Shown harness({100, 100}, Leaf("a", {20, 10}) | opacity(0.5) | overlay(Leaf("b")));
    auto& leaf = harness.find("a");
    EXPECT_EQ(leaf.frame(), CGRect::make(0, 0, 20, 10));
    EXPECT_EQ(leaf.superview()->frame(), CGRect::make(40, 45, 20, 10));
    EXPECT_EQ(leaf.superview()->alpha(), 0.5);
    EXPECT_EQ(harness.find("b").frame(), CGRect::make(40, 45, 20, 10));
}

TEST(Group, follows_changes_of_what_stands_in_it)
{
    auto shown = makeHandle<bool>();
    Shown harness(stateful(shown, true, [](bool isShown) {
        return when(
                   isShown, [] { return Leaf("a") | overlay(Leaf("b")); }, [] { return Leaf("c"); })
            | clipped();
    }));
    auto group = harness.controller->view()->subviews().front();
    EXPECT_EQ(names(*group), (Log{"a", "b"}));
    harness.set(shown, false);
    EXPECT_EQ(names(*group), Log{"c"});
    EXPECT_EQ(harness.controller->view()->subviews().front(), group);
}

TEST(Group, lets_touches_through_where_it_is_empty)
{
    ViewHarness harness({100, 100});
    auto small = Leaf("small", {20, 20}) | flexibleFrame({.maxWidth = INFINITY, .maxHeight = INFINITY});
    harness.show(host(Filler("behind") | overlay(small | opacity(0.9))));
    EXPECT_EQ(hitAt(harness, {50, 50}), &harness.find("small"));
    EXPECT_EQ(hitAt(harness, {10, 10}), &harness.find("behind"));
}

struct OpacityCase {
    std::string_view name;
    double given, shown;
};

TEST(Opacity, is_kept_between_nothing_and_all)
{
    for (auto& [name, given, shown] : {OpacityCase{"negative", -1, 0}, OpacityCase{"half", 0.5, 0.5},
                                       OpacityCase{"too much", 7, 1}, OpacityCase{"no number", NAN, 1}}) {
        Shown harness(Leaf("a") | opacity(given));
        EXPECT_EQ(harness.find("a").superview()->alpha(), shown) << name;
    }
}

TEST(Clipping, hides_and_does_not_touch_what_is_outside)
{
    Shown harness(
        {100, 100},
        Filler("behind")
            | overlay(Paint(red, "large", CGSize{80, 80}) | frame({.width = 40, .height = 40}) | clipped()));
    auto image = harness.snapshot();
    EXPECT_EQ(colorAt(image, {50, 50}), "ff0000");
    EXPECT_NE(colorAt(image, {20, 50}), "ff0000");
    EXPECT_EQ(hitAt(harness, {50, 50}), &harness.find("large"));
    EXPECT_EQ(hitAt(harness, {20, 50}), &harness.find("behind"));
}

TEST(Clipping, to_a_shape_follows_its_outline_also_when_it_grows)
{
    auto side = makeHandle<double>();
    Shown harness({100, 100}, stateful(side, 40.0, [](double now) {
                      return Filler("behind")
                          | overlay(Paint(red, "disc") | frame({.width = now, .height = now})
                                    | clipShape(Disc{}));
                  }));
    EXPECT_EQ(colorAt(harness.snapshot(), {50, 50}), "ff0000");
    EXPECT_NE(colorAt(harness.snapshot(), {33, 33}), "ff0000") << "the corner of the small disc";
    EXPECT_EQ(hitAt(harness, {33, 33}), &harness.find("behind"));
    harness.set(side, 80);
    EXPECT_EQ(colorAt(harness.snapshot(), {33, 33}), "ff0000");
    EXPECT_EQ(hitAt(harness, {33, 33}), &harness.find("disc"));
}

TEST(Clipping, to_round_corners_takes_any_radius)
{
    for (auto radius : {-5.0, 0.0, 10.0, 1000.0, double(NAN), double(INFINITY)}) {
        Shown harness({40, 40}, Paint(red) | cornerRadius(radius));
        auto image = harness.snapshot();
        EXPECT_EQ(colorAt(image, {20, 20}), "ff0000") << radius;
        EXPECT_EQ(colorAt(image, {0, 0}) == "ff0000", !(radius >= 10)) << radius;
    }
}

TEST(Mask, shows_the_content_only_where_the_mask_is)
{
    auto shown = makeHandle<bool>();
    Shown harness({100, 100}, stateful(shown, true, [](bool isWide) {
                      auto shape = Paint(blue, "mask", isWide ? CGSize{60, 20} : CGSize{20, 60});
                      return Paint(red, "content")
                          | mask(shape, Alignment{.vertical = VerticalAlignment::top});
                  }));
    EXPECT_EQ(colorAt(harness.snapshot(), {25, 10}), "ff0000");
    EXPECT_NE(colorAt(harness.snapshot(), {50, 50}), "ff0000");
    harness.set(shown, false);
    EXPECT_NE(colorAt(harness.snapshot(), {25, 10}), "ff0000");
    EXPECT_EQ(colorAt(harness.snapshot(), {50, 50}), "ff0000");
}

TEST(ScaleEffect, draws_larger_about_its_anchor_and_keeps_the_layout)
{
    struct Case {
        std::string_view name;
        UnitPoint anchor;
        CGRect frame;
    };
    for (auto& [name, anchor, frame] :
         {Case{"centre", UnitPoint::center(), CGRect::make(30, 35, 40, 30)},
          Case{"top left", UnitPoint::topLeading(), CGRect::make(40, 42.5, 40, 30)},
          Case{"bottom right", UnitPoint::bottomTrailing(), CGRect::make(20, 27.5, 40, 30)}}) {
        Shown harness({100, 100}, Leaf("a", {20, 15}) | scaleEffect(2, anchor) | overlay(Filler("beside")));
        EXPECT_EQ(harness.find("a").superview()->frame(), frame) << name;
        EXPECT_EQ(harness.find("beside").frame(), CGRect::make(40, 42.5, 20, 15)) << name;
    }
}

TEST(ScaleEffect, of_nothing_or_of_no_number_harms_nobody)
{
    for (auto factor : {0.0, double(NAN), double(INFINITY)}) {
        Shown harness({100, 100}, Leaf("a", {20, 10}) | scaleEffect(factor));
        hitAt(harness, {50, 50});
        harness.snapshot();
    }
}

TEST(RotationEffect, turns_clockwise)
{
    Shown harness({100, 100}, Paint(red, "a", CGSize{60, 20}) | rotationEffect(Angle::degrees(90)));
    EXPECT_EQ(colorAt(harness.snapshot(), {50, 25}), "ff0000");
    EXPECT_NE(colorAt(harness.snapshot(), {25, 50}), "ff0000");
}

// --- Interaction -------------------------------------------------------------------------------------

TEST(HitTesting, that_is_disallowed_lets_touches_through)
{
    auto allowed = makeHandle<bool>();
    Shown harness(
        {100, 100}, stateful(allowed, false, [](bool isAllowed) {
            return Filler("behind")
                | overlay(Filler("front")
                          | allowsHitTesting(isAllowed ? HitTesting::allowed : HitTesting::disallowed));
        }));
    EXPECT_EQ(hitAt(harness, {50, 50}), &harness.find("behind"));
    harness.set(allowed, true);
    EXPECT_EQ(hitAt(harness, {50, 50}), &harness.find("front"));
}

struct EnabledReader {
    Environment<IsEnabledKey> isEnabled{};
    auto dynamicProperties() { return std::tie(isEnabled); }
    auto body() const { return Leaf(isEnabled.get() ? "enabled" : "disabled"); }
};

TEST(Disabled, holds_whatever_is_said_inside_and_follows_changes)
{
    auto outer = makeHandle<bool>();
    Shown harness(stateful(outer, true, [](bool isDisabled) {
        return EnabledReader{} | disabled(false) | disabled(isDisabled);
    }));
    EXPECT_EQ(harness.names(), Log{"disabled"});
    harness.set(outer, false);
    EXPECT_EQ(harness.names(), Log{"enabled"});
}

} // namespace
