// SPDX-License-Identifier: MIT
// What follows the window: columns where there is room for them, frames while something is seen, transactions of the
// surroundings, and the keys of a list.
#include "platform/dispatch/DisplayLink.h"
#include "platform/swiftui/swiftui.h"
#include "tests/support/harness/DeclarativeHarness.h"

#include <gtest/gtest.h>
#include <numeric>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using harness::DeclarativeHarness;
using Role = AccessibilityRole;

TEST(NavigationView, stands_in_columns_where_there_is_room_and_keeps_what_it_shows_when_that_changes)
{
    struct Root {
        NavigationViewStyle style;
        auto body() const
        {
            auto deeper = Text{"deeper"} | navigationTitle("Deeper");
            auto page = VStack{Text{"chosen"}, NavigationLink{"More", deeper}} | navigationTitle("Page");
            return NavigationView{VStack{NavigationLink{"Open", page}, NavigationLink{"Other", Text{"other"}}}
                                      | navigationTitle("Start"),
                                  Text{"nothing chosen"}}
            | navigationViewStyle(style);
        }
    };
    for (auto isMirrored : {false, true}) {
        DeclarativeHarness harness({800, 400});
        harness.changeTraits([&](auto& traits) {
            traits.layoutDirection = isMirrored ? UIUserInterfaceLayoutDirection::rightToLeft
                                                : UIUserInterfaceLayoutDirection::leftToRight;
        });
        harness.show(Root{NavigationViewStyle::columns});
        auto tap = [&](const char* link) {
            harness.find(Role::link, link).tap();
            harness.advance(1s);
        };
        auto shown = [&](Role role, const char* label) { return harness.tryFind(role, label).has_value(); };
        for (auto width : {800, 400, 800}) {
            harness.resize({CGFloat(width), 400});
            EXPECT_EQ(shown(Role::staticText, "nothing chosen"), width == 800);
        }
        tap("Open");
        EXPECT_FALSE(shown(Role::staticText, "nothing chosen"));
        EXPECT_TRUE(shown(Role::link, "Open") && shown(Role::staticText, "chosen")) << "side by side";
        auto isLeft = harness.find(Role::link, "Open").frame().midX() < 400;
        EXPECT_EQ(isLeft, !isMirrored);
        tap("Other");
        EXPECT_TRUE(shown(Role::staticText, "other") && !shown(Role::staticText, "chosen"));
        tap("Open");
        tap("More");
        EXPECT_TRUE(shown(Role::link, "Open") && shown(Role::staticText, "deeper"));
        harness.resize({400, 400});
        EXPECT_TRUE(!shown(Role::link, "Open") && shown(Role::staticText, "deeper"));
        harness.find(Role::button, "Page").tap();
        harness.advance(1s);
        EXPECT_TRUE(shown(Role::staticText, "chosen"));
        harness.resize({800, 400});
        EXPECT_TRUE(shown(Role::link, "Open") && shown(Role::staticText, "chosen"));
    }
    DeclarativeHarness narrow({800, 400});
    narrow.show(Root{NavigationViewStyle::stack});
    narrow.find(Role::link, "Open").tap();
    narrow.advance(1s);
    EXPECT_FALSE(narrow.tryFind(Role::link, "Open"));
}

// Spins and grows for ever from the moment it appears.
struct Spinning {
    State<bool> turns{false};
    auto dynamicProperties() { return std::tie(turns); }
    auto body() const
    {
        return Color{UIColor::red()} | frame({.width = 40, .height = 40})
            | rotationEffect(Angle::degrees(turns ? 360 : 0)) | scaleEffect(turns ? 1.5 : 1.0)
            | animation(Animation::linear(2).repeatForever(false), *turns)
            | onAppear([state = turns] { state.set(true); });
    }
};

TEST(EndlessEffects, ask_for_no_frames_under_a_cover_or_scrolled_away_and_go_on_in_phase)
{
    auto isCovered = std::make_shared<StateCell<bool>>(false);
    DeclarativeHarness harness({300, 300});
    harness.show(ScrollView{VStack{Spinning{}, Color{UIColor::blue()} | frame({.height = 2000})}}
                 | fullScreenCover(Binding(isCovered), [] { return Text{"cover"}; }));
    auto runs = [&] {
        harness.advance(500ms);
        return DisplayLink::shared().isRunning();
    };
    auto picture = [&] { return harness.snapshot(); };
    EXPECT_TRUE(runs());
    harness.advance(2s - 500ms); // a whole turn later
    auto before = picture();
    isCovered->set(true);
    harness.advance(1s);
    EXPECT_FALSE(runs());
    isCovered->set(false);
    harness.advance(1s);
    EXPECT_TRUE(runs());
    harness.advance(1s);
    EXPECT_EQ(harness::colorAt(picture(), {150, 20}), harness::colorAt(before, {150, 20}));
    harness.scroll({150, 150}, {0, -1500});
    harness.advance(2s); // bars of the scroll view fade
    EXPECT_FALSE(runs());
    harness.scroll({150, 150}, {0, 1500});
    EXPECT_TRUE(runs());
}

TEST(EndlessEffects, in_a_mask_go_on_when_its_size_changes)
{
    struct Pulsing {
        State<bool> isDim{false};
        auto dynamicProperties() { return std::tie(isDim); }
        auto body() const
        {
            return Color{UIColor::red()}
            | mask(Circle{} | opacity(isDim ? 0 : 1)
                   | animation(Animation::linear(2).repeatForever(false), *isDim))
                | onAppear([state = isDim] { state.set(true); });
        }
    };
    DeclarativeHarness harness({100, 100});
    harness.show(Pulsing{});
    for (auto side : {100, 140}) {
        harness.resize({CGFloat(side), 100});
        harness.advance(500ms);
        auto before = harness.snapshot();
        harness.advance(500ms);
        EXPECT_NE(harness::colorAt(harness.snapshot(), {50, 50}), harness::colorAt(before, {50, 50})) << side;
    }
}

TEST(Transactions, of_what_appears_do_not_take_a_change_of_the_surroundings_along)
{
    struct Root {
        std::function<void()> changeTint;
        Environment<TintKey> tint;
        State<bool> isFaded{false};
        auto dynamicProperties() { return std::tie(tint, isFaded); }
        auto body() const
        {
            return Color{tint->value_or(UIColor::clear())} | opacity(isFaded ? 0.5 : 1)
                | onAppear([state = isFaded, change = changeTint] {
                       withAnimation(Animation::linear(10).repeatForever(), [state] { state.set(true); });
                       change();
                   });
        }
    };
    DeclarativeHarness harness({100, 100});
    harness.window().setTintColor(UIColor::red());
    harness.show(Root{[&] { harness.window().setTintColor(UIColor::blue()); }, {}});
    harness.advance(16ms);
    EXPECT_EQ(harness::colorAt(harness.snapshot(), {50, 50}).substr(0, 2), "00") << "no red is left in it";
}

TEST(List, is_gone_through_and_chosen_by_keys)
{
    std::vector<int> items(1000);
    std::iota(items.begin(), items.end(), 0);
    std::optional<int> chosen;
    auto binding = Binding<std::optional<int>>([&] { return chosen; },
                                               [&](std::optional<int> next) {
                                                   if (next != 2) // which it refuses
                                                       chosen = next;
                                               });
    auto row = [](int item) { return Text{std::to_string(item)}; };
    DeclarativeHarness harness({300, 400});
    harness.show(List{binding, items, std::identity{}, row});
    harness.press(UIKeyCode::tab);
    const struct {
        UIKeyCode key;
        const char* focused;
        std::optional<int> chosen;
    } cases[]{
        {UIKeyCode::down, "1", 1},       {UIKeyCode::down, "2", 1},    {UIKeyCode::up, "1", 1},
        {UIKeyCode::pageDown, "9", 9},   {UIKeyCode::end, "999", 999}, {UIKeyCode::down, "999", 999},
        {UIKeyCode::pageUp, "990", 990}, {UIKeyCode::home, "0", 0},    {UIKeyCode::up, "0", 0},
    };
    auto textOf = [](const harness::Element& cell) { return cell.find(Role::staticText).label(); };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.focused);
        EXPECT_TRUE(harness.press(each.key));
        harness.advance(100ms);
        auto focused = harness.focused();
        ASSERT_TRUE(focused);
        EXPECT_EQ(focused->role(), Role::listItem);
        EXPECT_EQ(textOf(*focused), each.focused);
        EXPECT_EQ(focused->visibleFrame(), focused->frame()) << "all of it is in sight";
        EXPECT_EQ(chosen, each.chosen);
    }
    harness.tap({100, 60}); // the second row
    EXPECT_EQ(chosen, 1);

    std::string opened;
    harness.show(List{items, std::identity{}, [&](int item) {
                          return Button{std::to_string(item),
                                        [&opened, item] { opened = std::to_string(item); }};
                      }});
    harness.press(UIKeyCode::tab);
    harness.press(UIKeyCode::down);
    harness.press(UIKeyCode::down);
    EXPECT_TRUE(harness.press(UIKeyCode::returnKey));
    EXPECT_EQ(opened, "2") << "a row with a button is that button";
}

} // namespace
