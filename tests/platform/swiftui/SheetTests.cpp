// SPDX-License-Identifier: MIT
// Sheets, covers and popovers that the tree wants.

#include "platform/uikit/UIPopoverPresentationController.h"
#include "platform/uikit/UISheetPresentationController.h"
#include "tests/platform/swiftui/probes.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using harness::ViewHarness;
using probes::cell;
using Role = AccessibilityRole;

// A host in a window, and what is over it.
struct Scene : probes::Scene {
    template <View Root>
    explicit Scene(Root root, CGSize size = {800, 600})
        : probes::Scene(std::move(root), size)
    {
    }
    std::optional<harness::Element> dialog()
    {
        auto all = harness.findAll(Role::dialog);
        return all.empty() ? std::nullopt : std::optional(all.back());
    }
    std::string text() { return dialog() ? dialog()->findAll(Role::staticText).front().label() : ""; }
};

struct Note {
    std::string id;
    std::string text = {};
    bool operator==(const Note&) const = default;
};

TEST(Sheet, is_there_while_its_flag_is_up_and_is_ended_by_the_user)
{
    const std::pair<const char*, std::function<void(Scene&)>> ways[] = {
        {"Escape", [](auto& scene) { scene.press(UIKeyCode::escape); }},
        {"beside it", [](auto& scene) { scene.harness.tap({5, 300}); }},
        {"flung down by a finger",
         [](auto& scene) {
             scene.harness.drag({400, 200}, {400, 400}, 80ms, {.type = UITouchType::finger});
         }},
        {"drawn down by its upper edge",
         [](auto& scene) {
             auto top = scene.dialog()->frame();
             scene.harness.drag({top.midX(), top.minY() + 10}, {top.midX(), top.minY() + 400}, 900ms, {});
         }},
        {"somebody else", [](auto& scene) { scene.host->dismiss(Animated::no); }},
    };
    for (auto& [name, end] : ways) {
        SCOPED_TRACE(name);
        auto flag = cell(true);
        int dismissed = 0;
        Scene scene(Color{} | sheet(Binding(flag), [&] { ++dismissed; }, [] { return Text{"inside"}; }));
        ASSERT_EQ(scene.text(), "inside");
        EXPECT_TRUE(scene.dialog()->properties().isModal);
        end(scene);
        scene.settle();
        EXPECT_FALSE(scene.dialog());
        EXPECT_FALSE(flag->value());
        EXPECT_EQ(dismissed, 1);
        flag->set(true);
        scene.settle();
        EXPECT_EQ(scene.text(), "inside");
        flag->set(false);
        scene.settle();
        EXPECT_FALSE(scene.dialog());
        EXPECT_EQ(dismissed, 2);
    }
}

TEST(Sheet, follows_a_finger_and_comes_back_when_it_lets_go_early)
{
    auto flag = cell(true);
    Scene scene(Color{} | sheet(Binding(flag), [] { return Text{"inside"}; }), {400, 600});
    auto rest = scene.dialog()->frame();
    EXPECT_EQ(rest, CGRect::make(0, 10, 400, 590)) << "a narrow window is filled";
    ViewHarness::Press finger{.type = UITouchType::finger};
    scene.harness.down({200, 100}, finger);
    for (int y = 110; y <= 250; y += 10) {
        scene.harness.advance(20ms);
        scene.harness.moveTo({200, static_cast<CGFloat>(y)});
    }
    auto drawn = scene.dialog()->frame().minY() - rest.minY();
    EXPECT_NEAR(drawn, 150, 11);
    scene.harness.advance(300ms);
    scene.harness.up();
    scene.harness.advance(50ms);
    auto wayNow = [&] { return scene.dialog()->view().presentationTransform().ty; };
    auto onTheWay = wayNow();
    EXPECT_TRUE(onTheWay > 0 && onTheWay < drawn) << onTheWay;
    scene.harness.down({200, 300}, finger); // caught
    scene.harness.moveTo({200, 330});
    EXPECT_NEAR(wayNow(), onTheWay + 30, 1);
    scene.harness.advance(300ms);
    scene.harness.up();
    scene.settle();
    EXPECT_EQ(scene.dialog()->frame(), rest);
    EXPECT_TRUE(flag->value());
}

TEST(Sheet, shows_the_item_of_its_binding)
{
    auto note = cell(std::optional(Note{"a", "first"}));
    std::string dismissed;
    Scene scene(
        Color{}
        | sheet(Binding(note), [&] { dismissed += "!"; }, [](const Note& each) { return Text{each.text}; }));
    EXPECT_EQ(scene.text(), "first");
    auto shown = scene.host->presentedViewController();
    note->set(Note{"a", "told otherwise"});
    scene.settle();
    EXPECT_EQ(scene.text(), "told otherwise");
    EXPECT_EQ(scene.host->presentedViewController(), shown) << "the same identity stays where it is";
    note->set(Note{"b", "second"});
    scene.settle();
    EXPECT_EQ(scene.text(), "second");
    EXPECT_EQ(dismissed, "!");
    EXPECT_TRUE(note->value());
    // While it goes, the last wish counts.
    note->set(std::nullopt);
    scene.harness.settle();
    scene.harness.advance(50ms);
    note->set(Note{"c", "third"});
    scene.settle();
    EXPECT_EQ(scene.text(), "third");
    EXPECT_EQ(dismissed, "!!");
}

TEST(Sheet, waits_for_its_turn_and_one_stands_on_another)
{
    auto a = cell(true), b = cell(false), inner = cell(false);
    Scene scene(ZStack{
        Color{}
        | sheet(Binding(a), [&] { return Text{"a"} | sheet(Binding(inner), [] { return Text{"inner"}; }); })
        | sheet(Binding(b), [] { return Text{"b"}; })});
    EXPECT_EQ(scene.text(), "a");
    b->set(true);
    inner->set(true);
    scene.settle();
    EXPECT_EQ(scene.text(), "inner");
    scene.press(UIKeyCode::escape);
    EXPECT_EQ(scene.text(), "a");
    EXPECT_FALSE(inner->value());
    EXPECT_TRUE(a->value());
    scene.press(UIKeyCode::escape);
    EXPECT_EQ(scene.text(), "b");
    a->set(true);
    scene.settle();
    EXPECT_EQ(scene.text(), "b");
    b->set(false);
    scene.settle();
    EXPECT_EQ(scene.text(), "a");
}

TEST(Sheet, cannot_be_ended_where_that_is_refused)
{
    {
        int asked = 0;
        Binding<bool> stubborn([] { return true; }, [&](bool) { ++asked; });
        Scene refusing(Color{} | sheet(stubborn, [] { return Text{"again"}; }));
        refusing.press(UIKeyCode::escape);
        EXPECT_EQ(asked, 1);
        EXPECT_EQ(refusing.text(), "again") << "presented anew";
    }
    // By its content, until that changes its mind.
    auto flag = cell(true), isHeld = cell(true);
    struct Content {
        Binding<bool> isHeld;
        auto dynamicProperties() { return std::tie(isHeld); }
        auto body() const { return Text{"held"} | interactiveDismissDisabled(isHeld.get()); }
    };
    Scene held(Color{} | sheet(Binding(flag), [&] { return Content{Binding(isHeld)}; }));
    held.press(UIKeyCode::escape);
    held.harness.tap({5, 5});
    held.harness.drag({400, 200}, {400, 500}, 80ms, {.type = UITouchType::finger});
    held.settle();
    EXPECT_EQ(held.text(), "held");
    isHeld->set(false);
    held.settle();
    held.press(UIKeyCode::escape);
    EXPECT_EQ(held.text(), "");
}

struct Marked : environment_keys::Key<int, 0> { };
struct Inside {
    Environment<Marked> mark;
    Environment<DismissKey> dismiss;
    auto dynamicProperties() { return std::tie(mark, dismiss); }
    auto body() const
    {
        return VStack{Text{std::to_string(*mark)}, Button{"Done", [end = *dismiss] { end(); }}};
    }
};

TEST(Sheet, belongs_to_the_place_that_wants_it)
{
    auto mark = cell(1);
    auto isThere = cell(true), flag = cell(true);
    struct Root {
        Binding<int> mark;
        Binding<bool> isThere, flag;
        auto dynamicProperties() { return std::tie(mark, isThere, flag); }
        auto body() const
        {
            return when(isThere.get(), [this] {
                return Color{} | sheet(flag, [] { return Inside{}; }) | environment<Marked>(mark.get());
            });
        }
    };
    Scene scene(Root{Binding(mark), Binding(isThere), Binding(flag)});
    EXPECT_EQ(scene.text(), "1") << "it sees the place's environment";
    mark->set(2);
    scene.settle();
    EXPECT_EQ(scene.text(), "2");
    scene.harness.find(Role::button, "Done").tap();
    scene.settle();
    EXPECT_FALSE(flag->value() || scene.dialog());
    flag->set(true);
    scene.settle();
    isThere->set(false);
    scene.settle();
    EXPECT_FALSE(scene.dialog()) << "it goes with the place";
}

TEST(FullScreenCover, fills_the_window_and_keeps_its_place_waiting)
{
    auto flag = cell(true);
    Scene scene(Color{} | fullScreenCover(Binding(flag), [] { return Text{"cover"}; }));
    ASSERT_EQ(scene.text(), "cover");
    EXPECT_EQ(scene.dialog()->frame(), CGRect::make(0, 0, 800, 600));
    EXPECT_EQ(scene.host->view()->window(), nullptr) << "what is covered costs nothing";
    flag->set(false);
    scene.settle();
    EXPECT_FALSE(scene.dialog());
    EXPECT_NE(scene.host->view()->window(), nullptr);
}

TEST(Popover, points_at_its_place_and_stays_in_the_window)
{
    using Arrow = UIPopoverArrowDirection;
    const std::tuple<const char*, Alignment, unsigned, CGPoint> cases[] = {
        {"at the top", Alignment::top(), Arrow::up, {200, 20}},
        {"in the middle", Alignment::center(), Arrow::up, {200, 160}},
        {"at the bottom it flips", Alignment::bottom(), Arrow::down, {200, 280}},
        {"in the corner", Alignment::topLeading(), Arrow::up, {20, 20}},
        {"in the other corner", Alignment::bottomTrailing(), Arrow::down, {380, 280}},
    };
    for (auto& [name, alignment, arrow, tip] : cases) {
        SCOPED_TRACE(name);
        auto flag = cell(true);
        auto anchor = Color{} | frame({.width = 40, .height = 20})
            | popover(Binding(flag), [] { return Color{} | frame({.width = 100, .height = 80}); });
        Scene scene(Color{} | overlay(anchor, alignment), {400, 300});
        auto popover = std::dynamic_pointer_cast<UIPopoverPresentationController>(
            scene.host->presentedViewController()->presentationController());
        ASSERT_NE(popover, nullptr);
        EXPECT_EQ(popover->arrowDirection().rawValue, arrow);
        auto bubble = scene.dialog()->frame();
        EXPECT_EQ(bubble.size, (CGSize{100, 90}));
        EXPECT_TRUE(CGRect::make(8, 8, 384, 284).contains(bubble));
        EXPECT_EQ(arrow == Arrow::up ? bubble.minY() : bubble.maxY(), tip.y);
        EXPECT_TRUE(bubble.minX() <= tip.x && bubble.maxX() >= tip.x);
    }
    auto flag = cell(true);
    Scene scene(Color{} | popover(Binding(flag), [] { return Text{"small"}; }), {400, 300});
    scene.harness.tap({5, 5});
    scene.settle();
    EXPECT_FALSE(flag->value() || scene.dialog());
}

} // namespace
