// SPDX-License-Identifier: MIT
#include "bottomsheet/bottomSheet.h"
#include "platform/swiftui/swiftui.h"
#include "tests/support/harness/DeclarativeHarness.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using Role = AccessibilityRole;
using Cell = std::shared_ptr<StateCell<bool>>;
using harness::colorAt;

constexpr CGSize windowSize{320, 480};
constexpr CGPoint bar{160, 190}; // of a sheet 300 high

struct Sheet {
    harness::DeclarativeHarness harness;
    Cell shown = std::make_shared<StateCell<bool>>(true);
    std::vector<bool> dismissals; // what the binding held each time

    explicit Sheet(bottomsheet::BottomSheetOptions options = {.height = 300},
                   const UITraitCollection& traits = {}, CGSize size = windowSize, bool isShown = true)
        : harness(size, traits)
    {
        shown->set(isShown);
        options.onDismiss = [this] { dismissals.push_back(shown->value()); };
        harness.show(Color{UIColor::white()} | overlay(Button{"Behind", [] {}}, Alignment::top())
                     | bottomsheet::bottomSheet(Binding(shown), options, [] {
                           return VStack{Text{"Title"}, Button{"First", [] { }}, Button{"Last", [] { }}};
                       }));
        harness.settle();
    }
    std::optional<CGRect> frame()
    {
        auto sheet = harness.tryFind(Role::dialog);
        return sheet ? std::optional(sheet->frame()) : std::nullopt;
    }
    // As it is seen, on its way perhaps.
    CGFloat top() { return harness.find(Role::dialog).view().presentationFrame().minY(); }
    void drag(const std::vector<std::pair<CGFloat, Duration>>& moves)
    {
        harness.down(bar);
        for (auto [y, time] : moves) {
            harness.advance(time);
            harness.moveTo({bar.x, bar.y + y});
            harness.settle();
        }
    }
};

TEST(BottomSheet, goes_when_it_is_dragged_far_or_thrown)
{
    struct Case {
        const char* name;
        std::vector<std::pair<CGFloat, Duration>> moves;
        bool isGoneBefore, isGoneAfter; // letting go
        CGFloat height = 300;
    };
    const Case cases[] = {
        {"slowly by exactly a fifth", {{30, 100ms}, {60, 100ms}}, false, false},
        {"a little more", {{30, 100ms}, {61, 100ms}}, false, true},
        {"thrown", {{20, 100ms}, {50, 20ms}}, true, true},
        {"far and thrown, told once", {{20, 100ms}, {150, 50ms}, {200, 50ms}}, true, true},
        {"at 1400 points a second", {{20, 100ms}, {48, 20ms}}, false, false},
        {"in no time", {{20, 100ms}, {48, 0ms}}, false, false},
        {"thrown up", {{-20, 100ms}, {-90, 20ms}}, false, false},
        {"far, then back", {{90, 100ms}, {20, 200ms}}, false, false},
        {"less than the 10 points that make a drag", {{9, 1ms}}, false, false},
        {"a fifth of the place, of a sheet asked to be higher", {{100, 500ms}}, false, false, 600},
        {"a fifth of what was asked for", {{121, 500ms}}, false, true, 600},
        {"of no sensible height", {{100, 500ms}}, false, false, NAN},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        Sheet sheet({.height = each.height});
        if (each.height == 600) {
            sheet.harness.down({160, 10});
            for (auto [y, time] : each.moves) {
                sheet.harness.advance(time);
                sheet.harness.moveTo({160, 10 + y});
            }
        } else {
            sheet.drag(each.moves);
        }
        EXPECT_EQ(!sheet.shown->value(), each.isGoneBefore);
        sheet.harness.up();
        sheet.harness.advance(2s);
        EXPECT_EQ(!sheet.shown->value(), each.isGoneAfter);
        EXPECT_EQ(sheet.dismissals, std::vector<bool>(each.isGoneAfter ? 1 : 0, false))
            << "the binding comes first, and one word of it";
        EXPECT_EQ(sheet.frame().has_value(), !each.isGoneAfter);
        if (!each.isGoneAfter && each.height == 300) {
            EXPECT_EQ(sheet.frame(), CGRect::make(0, 180, 320, 300)) << "it falls back";
        }
    }
}

TEST(BottomSheet, measures_the_speed_from_the_last_sample_of_the_drag_before)
{
    Sheet sheet;
    sheet.drag({{-100, 500ms}});
    sheet.harness.up();
    sheet.harness.advance(20ms);
    sheet.drag({{12, 30ms}}); // 112 points in 50 ms
    EXPECT_FALSE(sheet.shown->value());
}

TEST(BottomSheet, follows_the_finger_and_dims_what_is_behind)
{
    struct Case {
        CGFloat dragged;
        CGRect frame;
        const char* behind;
    };
    const Case cases[] = {
        {0, CGRect::make(0, 180, 320, 300), "999999"},   {30, CGRect::make(0, 210, 320, 300), "a6a6a6"},
        {240, CGRect::make(0, 420, 320, 300), "ffffff"}, {290, CGRect::make(0, 470, 320, 300), "ffffff"},
        {-60, CGRect::make(0, 60, 320, 420), "7f7f7f"},  {-390, CGRect::make(0, -600, 320, 1080), "000000"},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.dragged);
        Sheet sheet;
        sheet.drag({{each.dragged, 1s}});
        EXPECT_EQ(sheet.frame(), each.frame);
        if (each.frame.minY() > 50) {
            EXPECT_EQ(colorAt(sheet.harness.snapshot(), {5, 40}), each.behind);
        }
        sheet.harness.cancel();
        sheet.harness.advance(2s);
        EXPECT_EQ(sheet.frame(), cases[0].frame) << "a drag that is taken away leaves it";
    }
}

TEST(BottomSheet, is_caught_in_flight_where_it_is)
{
    Sheet sheet({.height = 300}, {}, windowSize, false);
    sheet.shown->set(true);
    sheet.harness.advance(70ms);
    auto inFlight = sheet.top();
    ASSERT_GT(inFlight, 200);
    ASSERT_LT(inFlight, 470);
    sheet.drag({{20, 0ms}});
    EXPECT_NEAR(sheet.top(), inFlight, 1) << "no jump to the finger";
    sheet.harness.advance(1s);
    EXPECT_EQ(sheet.top(), 200) << "but it comes there";
    sheet.harness.up();
    sheet.harness.advance(50ms);
    inFlight = sheet.top();
    auto& view = sheet.harness.find(Role::dialog).view();
    sheet.shown->set(false);
    sheet.harness.settle();
    EXPECT_NEAR(view.presentationFrame().minY(), inFlight, 1) << "it goes from where it is";
    sheet.harness.advance(30ms);
    EXPECT_GT(view.presentationFrame().minY(), inFlight);
}

TEST(BottomSheet, keeps_keys_and_focus_and_gives_them_back)
{
    Sheet sheet({.height = 300}, {}, windowSize, false);
    auto& harness = sheet.harness;
    harness.press(UIKeyCode::tab);
    ASSERT_EQ(harness.focused()->label(), "Behind");
    sheet.shown->set(true);
    harness.advance(1s);
    EXPECT_EQ(harness.find(Role::dialog).label(), "Title");
    EXPECT_TRUE(harness.find(Role::dialog).properties().isModal);
    EXPECT_FALSE(harness.tryFind(Role::button, "Behind"));
    std::string visited;
    for (int i = 0; i < 4; ++i) {
        harness.press(UIKeyCode::tab);
        visited += harness.focused() ? harness.focused()->label() + " " : "- ";
    }
    EXPECT_EQ(visited, "First Last First Last ");
    EXPECT_TRUE(harness.press(UIKeyCode::escape));
    harness.advance(1s);
    EXPECT_EQ(sheet.dismissals, std::vector{false});
    EXPECT_FALSE(sheet.frame());
    EXPECT_EQ(harness.focused()->label(), "Behind");
    EXPECT_FALSE(harness.press(UIKeyCode::escape)) << "away, it takes no keys";
    EXPECT_EQ(colorAt(harness.snapshot(), {160, 470}), "ffffff");
}

TEST(BottomSheet, goes_by_a_tap_beside_it_and_stays_where_the_binding_refuses)
{
    for (bool refuses : {false, true}) {
        Sheet sheet;
        int asked = 0;
        Binding<bool> refusing([] { return true; }, [&](bool) { ++asked; });
        if (refuses)
            sheet.harness.show(
                Color{UIColor::white()}
                | bottomsheet::bottomSheet(refusing, {.height = 300}, [] { return Text{"Title"}; }));
        sheet.harness.settle();
        sheet.harness.tap({160, 300});
        EXPECT_TRUE(sheet.dismissals.empty()) << "a tap on it is its own";
        sheet.harness.tap({20, 100});
        sheet.harness.advance(1s);
        EXPECT_EQ(sheet.frame().has_value(), refuses);
        if (!refuses)
            continue;
        EXPECT_EQ(asked, 1);
        sheet.harness.drag(bar, {160, 400});
        sheet.harness.advance(1s);
        EXPECT_GT(asked, 1);
        EXPECT_EQ(sheet.frame(), CGRect::make(0, 180, 320, 300));
    }
}

TEST(BottomSheet, of_two_the_front_one_has_the_keys)
{
    harness::DeclarativeHarness harness(windowSize);
    auto back = std::make_shared<StateCell<bool>>(false), front = std::make_shared<StateCell<bool>>(true);
    harness.show(
        Color{UIColor::white()}
        | bottomsheet::bottomSheet(Binding(back), {.height = 200}, [] { return Button{"Back", [] { }}; })
        | bottomsheet::bottomSheet(Binding(front), {.height = 100}, [] { return Button{"Front", [] { }}; }));
    harness.settle();
    harness.press(UIKeyCode::tab);
    back->set(true); // behind the one that is there
    harness.advance(1s);
    EXPECT_EQ(harness.focused()->label(), "Front");
    harness.press(UIKeyCode::escape);
    harness.advance(1s);
    EXPECT_TRUE(back->value() && !front->value());
    EXPECT_TRUE(harness.tryFind(Role::button, "Back"));
    harness.press(UIKeyCode::escape);
    harness.advance(1s);
    EXPECT_FALSE(back->value());
}

struct Note {
    int id = 0;
    std::string text;
    bool operator==(const Note&) const = default;
};

TEST(BottomSheet, shows_an_item_until_it_is_out_of_sight)
{
    harness::DeclarativeHarness harness(windowSize);
    auto note = std::make_shared<StateCell<std::optional<Note>>>(std::nullopt);
    harness.show(Color{UIColor::white()}
                 | bottomsheet::bottomSheet(Binding(note), {.height = 300},
                                            [](const Note& each) { return Text{each.text}; }));
    harness.settle();
    EXPECT_FALSE(harness.tryFind(Role::dialog));
    note->set(Note{1, "One"});
    harness.advance(1s);
    EXPECT_EQ(harness.find(Role::dialog).label(), "One");
    note->set(Note{2, "Two"});
    harness.advance(1s);
    EXPECT_EQ(harness.find(Role::dialog).label(), "Two");
    harness.tap({20, 100});
    harness.advance(80ms);
    EXPECT_EQ(note->value(), std::nullopt);
    EXPECT_TRUE(harness.tryFind(Role::staticText, "Two")) << "while it slides away";
    harness.advance(1s);
    EXPECT_FALSE(harness.tryFind(Role::staticText, "Two"));
}

TEST(BottomSheet, lets_its_content_scroll)
{
    harness::DeclarativeHarness harness(windowSize);
    auto shown = std::make_shared<StateCell<bool>>(true);
    harness.show(Color{UIColor::white()} | bottomsheet::bottomSheet(Binding(shown), {.height = 300}, [] {
                     return ScrollView{VStack{Color{UIColor::red()} | frame({.height = 900}), Text{"End"}}};
                 }));
    harness.settle();
    harness.drag({160, 240}, {160, 470}, 60ms, harness::Press{.type = UITouchType::finger});
    harness.drag({160, 460}, {160, 230}, 60ms, harness::Press{.type = UITouchType::finger});
    EXPECT_TRUE(shown->value());
    EXPECT_EQ(harness.find(Role::dialog).frame().minY(), 180);
    EXPECT_LT(harness.find(Role::staticText, "End").frame().minY(), 1050) << "it has scrolled";
}

TEST(BottomSheet, stands_in_any_place)
{
    struct Case {
        const char* name;
        CGSize size;
        CGFloat height;
        CGRect frame;
        UIEdgeInsets safeArea = {};
    };
    const auto infinity = std::numeric_limits<CGFloat>::infinity();
    const Case cases[] = {
        {"no room", {0, 0}, 300, {}},
        {"narrow", {40, 200}, 120, CGRect::make(0, 80, 40, 120)},
        {"higher than the place", {320, 480}, infinity, CGRect::make(0, 0, 320, 480)},
        {"not a number", {320, 480}, NAN, CGRect::make(0, 480, 320, 0)},
        {"less than nothing", {320, 480}, -5, CGRect::make(0, 480, 320, 0)},
        {"in a safe area",
         {320, 480},
         300,
         CGRect::make(0, 180, 320, 300),
         {.top = 20, .left = 0, .bottom = 34, .right = 0}},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        for (auto corner : {std::optional<CGFloat>(NAN), std::optional<CGFloat>()}) {
            Sheet sheet({.height = each.height, .topBarCornerRadius = corner},
                        {.layoutDirection = UIUserInterfaceLayoutDirection::rightToLeft}, each.size);
            sheet.harness.window().setBaseSafeAreaInsets(each.safeArea);
            sheet.harness.settle();
            if (each.size.width > 0) {
                EXPECT_EQ(sheet.frame(), each.frame);
                if (each.frame.minY() > 10) {
                    EXPECT_EQ(colorAt(sheet.harness.snapshot(), {2, 2}), "999999") << "dim up to the edges";
                }
            }
            sheet.shown->set(false);
            sheet.harness.advance(1s);
            EXPECT_FALSE(sheet.frame());
        }
    }
}

TEST(BottomSheet, costs_no_frames_at_rest_and_moves_nothing_where_motion_is_unwanted)
{
    Sheet sheet({.height = 300}, {.prefersReducedMotion = true}, windowSize, false);
    sheet.harness.paintFrame();
    EXPECT_EQ(sheet.harness.playFrames(1s).painted, 0);
    sheet.shown->set(true);
    sheet.harness.settle();
    EXPECT_EQ(sheet.frame(), CGRect::make(0, 180, 320, 300));
    sheet.harness.paintFrame();
    EXPECT_EQ(sheet.harness.playFrames(1s).painted, 0);
    auto image = sheet.harness.snapshot();
    EXPECT_EQ(colorAt(image, {1, 181}), "999999") << "round at the top";
    EXPECT_EQ(colorAt(image, {1, 478}), "ffffff") << "and square below";
}

} // namespace
