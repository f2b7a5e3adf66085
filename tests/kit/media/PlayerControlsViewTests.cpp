// SPDX-License-Identifier: MIT
#include "kit/media/PlayerControlsView.h"

#include "platform/swiftui/Text.h"
#include "platform/swiftui/TextField.h"
#include "tests/support/harness/DeclarativeHarness.h"
#include "tests/support/harness/pixels.h"

#include <gtest/gtest.h>

namespace zelk {
namespace {

using namespace platform;
using enum AccessibilityRole;
using harness::DeclarativeHarness;
using Action = PlayerControlsAction;

// An owner of a player who notes what it is asked for, and plays when it is told to.
struct Owner {
    std::vector<Action>* log;
    State<bool> isPlaying = false;
    State<std::string> text = std::string();

    auto dynamicProperties() { return std::tie(isPlaying, text); }
    auto body() const
    {
        auto playing = isPlaying.binding();
        auto perform = [log = log, playing](Action action) {
            log->push_back(action);
            if (action == Action::playpause)
                playing.set(!playing.get());
        };
        return VStack{PlayerControlsView{[] { return Text{"Header"}; }, Binding<double>::constant(0.5),
                                         std::optional(CMTime{60, 1}), playing, perform},
                      TextField{"Search", text.binding()}};
    }
};

TEST(PlayerControlsView, sends_what_is_pressed_by_button_or_by_key)
{
    using enum UIKeyCode;
    constexpr auto command = UIKeyModifierFlags::control;
    using Act = std::function<void(DeclarativeHarness&)>;
    const std::tuple<std::string_view, Act, std::vector<Action>> cases[] = {
        {"back", [](auto& h) { h.find(button, "Skip Back 5 Seconds").tap(); }, {Action::backward5}},
        {"on", [](auto& h) { h.find(button, "Skip Forward 5 Seconds").tap(); }, {Action::forward5}},
        {"play", [](auto& h) { h.find(button, "Play").tap(); }, {Action::playpause}},
        {"Command and left", [](auto& h) { h.press(left, command); }, {Action::backward5}},
        {"Command and right", [](auto& h) { h.press(right, command); }, {Action::forward5}},
        {"Space", [](auto& h) { h.press(space); }, {Action::playpause}},
        {"an arrow alone", [](auto& h) { h.press(left); }, {}},
        {"Command and Space", [](auto& h) { h.press(space, command); }, {}},
        {"Space in a text", [](auto& h) { h.find(textField, "Search").type(" "); }, {}},
        {"assistive technology", [](auto& h) { h.find(button, "Play").activate(); }, {Action::playpause}},
    };
    for (auto& [name, act, expected] : cases) {
        std::vector<Action> log;
        DeclarativeHarness harness({400, 240});
        harness.show(Owner{&log});
        act(harness);
        EXPECT_EQ(log, expected) << name;
    }
}

TEST(PlayerControlsView, shows_pause_while_it_plays_under_the_header_and_in_the_order_of_time)
{
    for (auto direction :
         {UIUserInterfaceLayoutDirection::leftToRight, UIUserInterfaceLayoutDirection::rightToLeft}) {
        std::vector<Action> log;
        DeclarativeHarness harness({400, 240}, {.layoutDirection = direction});
        harness.show(Owner{&log});
        auto still = harness.snapshot();
        harness.press(UIKeyCode::space);
        auto pause = harness.find(button, "Pause");
        EXPECT_FALSE(harness.tryFind(button, "Play"));
        EXPECT_GT(harness::differenceOf(still, harness.snapshot()), 0);
        EXPECT_LT(harness.find(button, "Skip Back 5 Seconds").frame().midX(), pause.frame().midX());
        EXPECT_LT(pause.frame().midX(), harness.find(button, "Skip Forward 5 Seconds").frame().midX());
        EXPECT_LT(harness.find(staticText, "Header").frame().maxY(), pause.frame().midY());
        EXPECT_GE(pause.frame().width(), 44) << "a finger finds it";
    }
}

TEST(PlayerControlsView, takes_the_colour_of_the_theme_and_needs_neither_theme_duration_nor_header)
{
    auto view = PlayerControlsView{Binding<double>::constant(0), std::optional<CMTime>(),
                                   Binding<bool>::constant(false), std::function<void(Action)>()};
    for (bool hasTheme : {true, false}) {
        auto theme = hasTheme ? std::make_shared<ThemeManager>() : nullptr;
        if (theme)
            theme->setTintUIColor(UIColor(0, 0.6, 0));
        DeclarativeHarness harness({300, 60});
        harness.show(view | environmentObject(theme));
        auto play = harness.find(button, "Play");
        EXPECT_EQ(harness::colorAt(harness.snapshot(), play.frame().center()),
                  hasTheme ? "009900" : "000000");
        play.tap(); // nobody listens
    }
}

} // namespace
} // namespace zelk
