// SPDX-License-Identifier: MIT
// What is painted anew after a change: all that looks different, and nothing where nobody sees it.
#include "platform/uikit/GradientMask.h"
#include "platform/uikit/OutlineMask.h"
#include "platform/uikit/UILabel.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

using namespace std::chrono_literals;
using harness::ViewHarness;
using Views = std::vector<std::shared_ptr<UIView>>;

struct Sweep : UIView, GradientMask {
    LinearGradientLine gradientNow() override
    {
        return {{{0, UIColor::gray(0, 0.3)}, {1, UIColor::black()}}, bounds().origin, {bounds().maxX(), 0}};
    }
};

struct Oval : UIView, OutlineMask {
    UIBezierPath outlineNow() const override { return UIBezierPath::oval(bounds()); }
    void draw(CGContext& context, CGRect) override { context.fill(outlineNow(), UIColor::black()); }
};

template <class V = UIView>
std::shared_ptr<V> make(CGRect frame, const std::optional<UIColor>& color = {})
{
    auto view = std::make_shared<V>();
    view->setFrame(frame);
    view->setBackgroundColor(color);
    return view;
}

struct Case {
    const char* name;
    // What stands in the window, each inside of the one before, and what then happens to it.
    std::function<Views()> views;
    std::function<void(const Views&, ViewHarness&)> change;
    bool isSeen = true;
};

Views under(const std::shared_ptr<UIView>& mask)
{
    auto outer = make(CGRect::make(10, 10, 60, 40), UIColor::systemYellow());
    outer->setMask(mask);
    return {outer, make(CGRect::make(5, 5, 40, 20), UIColor::blue()),
            make(CGRect::make(5, 5, 10, 10), UIColor::red())};
}
Views underSweep()
{
    return under(make<Sweep>(CGRect::make(0, 0, 60, 40)));
}

const std::vector<Case>& cases()
{
    static auto recolor = [](const Views& views, ViewHarness&) {
        views.back()->setBackgroundColor(UIColor::green());
    };
    static const std::vector<Case> all{
        {"a mask that goes", [] { return under(make<Oval>(CGRect::make(0, 0, 60, 40))); },
         [](auto& views, auto&) { views.front()->setMask(nullptr); }},
        {"under a gradient", underSweep, recolor},
        {"under a gradient what goes", underSweep,
         [](auto& views, auto&) { views.back()->removeFromSuperview(); }},
        {"under a gradient what is behind another now", underSweep,
         [](auto& views, auto&) {
             views[0]->addSubview(make(CGRect::make(8, 8, 20, 20), UIColor::systemTeal()));
             views[0]->sendSubviewToBack(*views[0]->subviews().back());
             views[1]->setAlpha(0.5);
         }},
        {"under a gradient with all of the window", underSweep,
         [](auto& views, auto& harness) {
             harness.window().setNeedsDisplay();
             recolor(views, harness);
         }},
        {"under a gradient while it is in no window", underSweep,
         [](auto& views, auto& harness) {
             auto around = views.front()->superview();
             views.front()->removeFromSuperview();
             recolor(views, harness);
             around->addSubview(views.front());
         }},
        {"under a gradient while what is around is in another window",
         [] {
             auto views = underSweep();
             views.insert(views.begin(), make(CGRect::make(0, 0, 90, 60)));
             return views;
         },
         [](auto& views, auto& harness) {
             auto around = views.front()->superview();
             auto other = std::make_shared<UIWindow>(CGRect::make(0, 0, 100, 80));
             other->setBaseTraits(harness.traits());
             other->setNeedsDisplay();
             other->addSubview(views.front());
             views.back()->setCenter({30, 10});
             around->addSubview(views.front());
         }},
        {"under a gradient that was away",
         [] {
             auto mask = make(CGRect::make(0, 0, 60, 40));
             mask->addSubview(make<Sweep>(mask->bounds()));
             return under(mask);
         },
         [](auto& views, auto& harness) {
             auto& mask = *views.front()->mask();
             auto sweep = mask.subviews().front();
             sweep->removeFromSuperview();
             recolor(views, harness);
             mask.addSubview(sweep);
         }},
        {"under a gradient while it is hidden", underSweep,
         [](auto& views, auto& harness) {
             views.front()->setHidden(true);
             recolor(views, harness);
             views.front()->setHidden(false);
         }},
        {"in what is hidden under a gradient",
         [] {
             auto views = underSweep();
             views[1]->setHidden(true);
             return views;
         },
         recolor, false},
        {"under a gradient by an animation", underSweep,
         [](auto& views, auto& harness) {
             UIView::animate(AnimationTiming::linear(1), [&] { views[1]->setCenter({30, 30}); });
             harness.advance(500ms);
         }},
        {"in what is clear",
         [] {
             auto views = under(nullptr);
             views[1]->setAlpha(0);
             return views;
         },
         [](auto& views, auto& harness) {
             recolor(views, harness);
             UIView::animate(AnimationTiming::linear(1), [&] { views[2]->setCenter({30, 10}); });
             harness.advance(500ms);
         },
         false},
        {"a shadow of what is clipped away itself",
         [] {
             auto outer = make(CGRect::make(10, 10, 40, 40));
             outer->setClipsToBounds(true);
             auto inner = make(CGRect::make(-30, 10, 20, 20), UIColor::red());
             inner->setShadow(UIViewShadow{.opacity = 1, .offset = {40, 0}});
             return Views{outer, inner};
         },
         [](auto& views, auto&) { views[1]->setHidden(true); }},
        {"a label that turns",
         [] {
             auto label = make<UILabel>(CGRect::make(10, 10, 60, 20));
             label->setText("(1");
             return Views{label};
         },
         [](auto& views, auto&) {
             views[0]->setSemanticContentAttribute(UISemanticContentAttribute::forceRightToLeft);
         }},
    };
    return all;
}

TEST(Repainting, is_of_all_that_looks_different_and_of_nothing_unseen)
{
    for (const auto& each : cases()) {
        ViewHarness harness({100, 80});
        auto root = make({}, UIColor::white());
        auto views = each.views();
        harness.show(root);
        auto around = root;
        for (const auto& view : views) {
            around->addSubview(view);
            around = view;
        }
        for (int frame = 0; frame < 4; ++frame) { // by then what rests is kept
            harness.paintFrame();
            harness.snapshot();
        }
        auto before = harness.snapshot();
        each.change(views, harness);
        auto painted = harness.paintFrame();
        auto after = harness.snapshot();
        EXPECT_EQ(harness::differenceOf(before, after, 0) > 0, each.isSeen) << each.name;
        EXPECT_EQ(!painted.empty(), each.isSeen) << each.name;
        for (int y = 0; y < after.pixelHeight(); ++y) {
            for (int x = 0; x < after.pixelWidth(); ++x) {
                auto isPainted = std::ranges::any_of(
                    painted, [&](auto& rect) { return rect.contains(CGRect::make(x, y, 1, 1)); });
                EXPECT_TRUE(isPainted || before.pixel(x, y) == after.pixel(x, y))
                    << each.name << " at " << x << " " << y;
            }
        }
    }
}

} // namespace
} // namespace platform
