// SPDX-License-Identifier: MIT
// Declarative controls, as somebody meets them who uses them.
#include "platform/swiftui/swiftui.h"
#include "tests/support/harness/DeclarativeHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using enum AccessibilityRole;
using harness::DeclarativeHarness;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

// An owner of a value who takes only what it likes.
template <class Value>
struct Owner {
    Value value;
    std::function<bool(const Value&)> accepts = [](const Value&) { return true; };
    int asked = 0;

    Binding<Value> binding()
    {
        return Binding<Value>([this] { return value; },
                              [this](Value wish) {
                                  ++asked;
                                  if (accepts(wish))
                                      value = std::move(wish);
                              });
    }
};

TEST(Controls, write_to_their_binding_and_fall_back_to_one_that_refuses)
{
    for (bool accepts : {true, false}) {
        Owner<double> volume{0}, copies{2};
        Owner<bool> isOn{false}, isBold{false};
        Owner<int> flavour{1};
        Owner<std::string> name{"a"}, secret{"b"};
        volume.accepts = copies.accepts = [&](double) { return accepts; };
        isOn.accepts = isBold.accepts = [&](bool) { return accepts; };
        flavour.accepts = [&](int) { return accepts; };
        name.accepts = secret.accepts = [&](const std::string&) { return accepts; };

        DeclarativeHarness harness({320, 480});
        harness.show(VStack{Slider{volume.binding(), {.in = {0, 10}, .step = 5, .label = "Volume"}},
                            Stepper{"Copies", copies.binding(), {.in = {1, 9}}},
                            Toggle{"Wireless", isOn.binding()},
                            Toggle{"Bold", isBold.binding()} | toggleStyle(ToggleStyle::button_),
                            Picker<int>{"Flavour", flavour.binding(), {{1, "Lemon"}, {2, "Mint"}}},
                            TextField{"Name", name.binding()}, SecureField{"Secret", secret.binding()}});
        auto slider = harness.find(AccessibilityRole::slider, "Volume");
        slider.tap(); // in the middle
        EXPECT_EQ(slider.range()->value, accepts ? 5 : 0);
        auto stepper = harness.find(spinButton, "Copies");
        stepper.increment();
        EXPECT_EQ(stepper.range()->value, accepts ? 3 : 2);
        for (auto* toggleName : {"Wireless", "Bold"}) {
            auto found = harness.find(toggle, toggleName);
            found.tap();
            harness.advance(1s);
            EXPECT_EQ(harness.find(toggle, toggleName).isSelected(),
                      accepts && toggleName == std::string_view("Wireless"))
                << "a binding of functions tells nobody of its changes";
        }
        harness.find(radioButton, "Mint").tap();
        EXPECT_EQ(harness.find(radioButton, "Mint").isSelected(), accepts);
        EXPECT_EQ(harness.find(radioButton, "Lemon").isSelected(), !accepts);
        for (auto* fieldName : {"Name", "Secret"})
            harness.find(textField, fieldName).type("x");
        EXPECT_EQ(name.value, accepts ? "ax" : "a");
        EXPECT_EQ(secret.value, accepts ? "bx" : "b");
        for (int asked :
             {volume.asked, copies.asked, isOn.asked, isBold.asked, flavour.asked, name.asked, secret.asked})
            EXPECT_EQ(asked, 1);
    }
}

// All controls on one state.
struct Board {
    State<double> amount = 3.0;
    State<bool> isOn = false;
    bool isDisabled = false;

    auto dynamicProperties() { return std::tie(amount, isOn); }
    auto body() const
    {
        auto whole = Binding<int>([amount = amount] { return static_cast<int>(*amount); },
                                  [binding = amount.binding()](int value) { binding.set(value); });
        return VStack{Slider{amount.binding(), {.in = {0, 10}, .label = "Slider"}},
                      Stepper{"Stepper", amount.binding()},
                      ProgressView{"Bar", *amount, 10},
                      Picker<int>{"Picker", whole, {{3, "Three"}, {4, "Four"}}},
                      Toggle{"Switch", isOn.binding()},
                      Toggle{"Button", isOn.binding()} | toggleStyle(ToggleStyle::button_)}
        | disabled(isDisabled);
    }
};

TEST(Controls, follow_a_state_that_another_control_changes)
{
    DeclarativeHarness harness({320, 480});
    harness.show(Board{});
    harness.find(spinButton, "Stepper").increment();
    harness.advance(1s);
    EXPECT_EQ(harness.find(AccessibilityRole::slider).range()->value, 4);
    EXPECT_EQ(harness.find(progress, "Bar").range()->value, 0.4);
    EXPECT_TRUE(harness.find(radioButton, "Four").isSelected());
    harness.find(toggle, "Button").tap();
    harness.advance(1s);
    EXPECT_TRUE(harness.find(toggle, "Switch").isSelected());
    EXPECT_TRUE(harness.find(toggle, "Button").isSelected());
}

TEST(Controls, that_are_disabled_do_nothing_and_say_so)
{
    DeclarativeHarness harness({320, 480});
    harness.show(Board{.isDisabled = true});
    auto before = harness.describe();
    for (auto role : {AccessibilityRole::slider, spinButton, radioButton, toggle}) {
        for (auto& element : harness.findAll(role)) {
            EXPECT_FALSE(element.isEnabled());
            element.tap();
            EXPECT_FALSE(element.activate());
            EXPECT_FALSE(element.increment());
        }
    }
    harness.advance(1s);
    EXPECT_EQ(harness.describe(), before);
    EXPECT_FALSE(harness.press(UIKeyCode::tab)) << "there is nothing to go to";
}

TEST(Controls, grow_with_the_text_of_the_desktop)
{
    Owner<std::string> name{"Ada"};
    Owner<int> flavour{0};
    DeclarativeHarness harness({320, 480});
    harness.show(VStack{TextField{"Name", name.binding()},
                        Picker<int>{"Flavour", flavour.binding(), {{0, "Mint"}, {1, "Lemon"}}}
                            | pickerStyle(PickerStyle::menu)});
    auto heights = [&] {
        return std::pair{harness.find(textField).frame().height(), harness.find(menuButton).frame().height()};
    };
    auto [field, menu] = heights();
    harness.changeTraits([](UITraitCollection& traits) {
        traits.preferredContentSizeCategory = UIContentSizeCategory::accessibilityLarge;
    });
    harness.settle();
    auto [largeField, largeMenu] = heights();
    EXPECT_GT(largeField, field * 1.4);
    EXPECT_GT(largeMenu, menu * 1.4);
}

TEST(Slider, tells_when_it_is_taken_and_let_go)
{
    std::string log;
    Owner<double> value{0.5};
    DeclarativeHarness harness({220, 60});
    harness.show(
        Slider{value.binding(), {.onEditingChanged = [&](bool isEditing) { log += isEditing ? "+" : "-"; }}});
    harness.drag({110, 30}, {150, 30});
    EXPECT_EQ(log, "+-");
    harness.press(UIKeyCode::tab);
    harness.press(UIKeyCode::home);
    EXPECT_EQ(log, "+-+-");
    EXPECT_EQ(value.value, 0);
}

TEST(Slider, is_whole_with_a_range_or_a_value_that_is_none)
{
    const std::tuple<std::string_view, ValueRange, double, double> cases[] = {
        {"inverted", {5, 1}, 3, 5},
        {"no numbers", {notANumber, std::numeric_limits<double>::infinity()}, 0.25, 0.25},
        {"too much", {0, 1}, 7, 1},
        {"no value", {2, 4}, notANumber, 2},
    };
    for (auto& [name, range, given, shown] : cases) {
        DeclarativeHarness harness({220, 60});
        harness.show(Slider{Binding<double>::constant(given), {.in = range}});
        EXPECT_EQ(harness.find(AccessibilityRole::slider).range()->value, shown) << name;
        harness.drag({110, 30}, {150, 30});
        EXPECT_EQ(harness.find(AccessibilityRole::slider).range()->value, shown) << name;
    }
}

TEST(ProgressView, is_busy_where_nobody_knows_how_much_is_done)
{
    const std::tuple<std::string_view, std::optional<double>, double, std::optional<double>> cases[] = {
        {"a part", 3, 10, 0.3},          {"more than all", 12, 10, 1}, {"less than nothing", -1, 10, 0},
        {"of nothing", 0, 0, {}},        {"of less", 1, -5, {}},       {"no number", notANumber, 1, {}},
        {"unknown", std::nullopt, 1, {}}};
    for (auto style : {ProgressViewStyle::automatic, ProgressViewStyle::linear}) {
        for (auto& [name, value, total, part] : cases) {
            DeclarativeHarness harness({220, 60});
            harness.show(ProgressView{"Work", value, total} | progressViewStyle(style));
            auto element = harness.find(progress, "Work");
            auto range = element.range();
            EXPECT_EQ(range ? std::optional(range->value) : std::nullopt, part) << name;
            EXPECT_EQ(element.properties().isBusy, !part) << name;
        }
    }
}

TEST(TextField, shows_at_once_what_the_binding_makes_of_it)
{
    std::string text = "a";
    int submitted = 0;
    Binding<std::string> shouting(
        [&] { return text; },
        [&](std::string wish) {
            text.clear();
            for (char each : wish)
                text.push_back(each >= 'a' && each <= 'z' ? static_cast<char>(each - 32) : each);
        });
    DeclarativeHarness harness({220, 60});
    harness.show(TextField{"Name", shouting, {.onSubmit = [&] { ++submitted; }}});
    harness.find(textField, "Name").type("bc");
    harness.press(UIKeyCode::returnKey);
    EXPECT_EQ(text, "ABC");
    EXPECT_EQ(submitted, 1);
}

TEST(KeyboardShortcut, presses_the_button_where_nobody_else_takes_the_key)
{
    using Held = UIKeyModifierFlags;
    struct Case {
        std::string_view name;
        KeyboardShortcut shortcut;
        std::function<void(DeclarativeHarness&)> act;
        bool isPressed;
    };
    auto space = KeyboardShortcut{KeyEquivalent::space(), EventModifiers::none};
    auto commandLeft = KeyboardShortcut{KeyEquivalent::leftArrow()};
    auto commandS = KeyboardShortcut{KeyEquivalent::of("s")};
    const Case cases[] = {
        {"plain", space, [](auto& h) { h.press(UIKeyCode::space); }, true},
        {"not with a modifier", space, [](auto& h) { h.press(UIKeyCode::space, Held::control); }, false},
        {"Control is the desktop's command key", commandLeft,
         [](auto& h) { h.press(UIKeyCode::left, Held::control); }, true},
        {"so is the platform's own", commandLeft, [](auto& h) { h.press(UIKeyCode::left, Held::command); },
         true},
        {"an arrow alone", commandLeft, [](auto& h) { h.press(UIKeyCode::left); }, false},
        {"Shift too many", commandLeft,
         [](auto& h) { h.press(UIKeyCode::left, Held::control | Held::shift); }, false},
        {"a character", commandS, [](auto& h) { h.press("s", Held::control); }, true},
        {"another character", commandS, [](auto& h) { h.press("a", Held::control); }, false},
        {"a text takes what it types", space, [](auto& h) { h.find(textField).type(" "); }, false},
    };
    for (auto& each : cases) {
        int pressed = 0;
        Owner<std::string> text{""};
        DeclarativeHarness harness({220, 200});
        harness.show(VStack{Button{"Go", [&] { ++pressed; }} | keyboardShortcut(each.shortcut),
                            TextField{"Name", text.binding()}, Button{"Other", [] { FAIL(); }}});
        each.act(harness);
        EXPECT_EQ(pressed == 1, each.isPressed) << each.name;
    }
    DeclarativeHarness harness;
    harness.show(Button{"Go", [] { FAIL() << "it is disabled"; }} | keyboardShortcut(space) | disabled());
    EXPECT_FALSE(harness.press(UIKeyCode::space));
}

TEST(Hover, is_told_and_seen_and_ends_when_the_pointer_leaves)
{
    std::string log;
    DeclarativeHarness harness({200, 100});
    harness.show(Button{[] {}, Rectangle{} | fill(UIColor::clear()) | frame({.width = 40, .height = 40})}
                 | hoverEffect() | onHover([&](bool isOver) { log += isOver ? "+" : "-"; }));
    auto before = harness.snapshot();
    harness.hover({100, 50});
    harness.advance(1s);
    EXPECT_EQ(log, "+");
    EXPECT_GT(harness::differenceOf(before, harness.snapshot(), 3), 0.05);
    harness.hover({5, 5});
    harness.advance(1s);
    EXPECT_EQ(log, "+-");
    EXPECT_EQ(harness::differenceOf(before, harness.snapshot(), 3), 0);
}

TEST(Adjustable, makes_a_slider_of_anything_for_keys_and_assistive_technology)
{
    double value = 0.5;
    DeclarativeHarness harness({200, 100});
    auto show = [&](bool isDisabled) {
        return Circle{}
        | adjustable({.value = value,
                      .step = 0.25,
                      .label = "Dial",
                      .onChange = [&](double wish) { value = wish; }})
            | disabled(isDisabled);
    };
    auto controller = harness.show(show(false));
    auto change = [&](auto act) {
        value = 0.5;
        act();
        controller->setRootView(show(false));
        harness.settle();
        return value;
    };
    auto dial = harness.find(AccessibilityRole::slider, "Dial");
    EXPECT_EQ(change([&] { dial.increment(); }), 0.75);
    EXPECT_EQ(change([&] { dial.setValue(0.1); }), 0.1);
    harness.press(UIKeyCode::tab);
    EXPECT_TRUE(dial.isFocused());
    EXPECT_NEAR(change([&] { harness.press(UIKeyCode::right); }), 0.35, 1e-9) << "from what it was told last";
    controller->setRootView(show(true));
    harness.settle();
    EXPECT_FALSE(dial.isFocused());
    EXPECT_FALSE(dial.increment());
}

} // namespace
