// SPDX-License-Identifier: MIT
#include "platform/uikit/EventTranslation_p.h"

#include "platform/graphics/GraphicsRuntime.h"
#include "platform/uikit/ClickCounter.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace std::chrono_literals;

// Keys as X11 and Wayland deliver them: the scan code is Linux's number of the key plus 8.
TEST(EventTranslation, says_what_a_key_is_and_types)
{
    startGraphics(DisplayMode::offscreen); // it owns the keyboard that the events name
    struct Case {
        std::string_view name;
        int key;
        Qt::KeyboardModifiers modifiers;
        const char16_t* text;
        quint32 scanCode;
        UIKeyCode code;
        std::uint8_t flags;
        std::string characters, plain;
    };
    constexpr auto none = Qt::NoModifier;
    using Code = UIKeyCode;
    using Flags = UIKeyModifierFlags;
    const Case cases[] = {
        {"a letter", Qt::Key_A, none, u"a", 38, Code::character, 0, "a", "a"},
        {"a capital", Qt::Key_A, Qt::ShiftModifier, u"A", 38, Code::character, Flags::shift, "A", "a"},
        {"a command types nothing", Qt::Key_C, Qt::ControlModifier, u"\x03", 54, Code::character,
         Flags::control, "", "c"},
        {"a sign on a shifted key", Qt::Key_Plus, Qt::ControlModifier | Qt::ShiftModifier, u"+", 21,
         Code::character, Flags::control | Flags::shift, "", "+"},
        {"a Cyrillic letter", 0x0421, none, u"с", 54, Code::character, 0, "с", "с"},
        {"a command on a Cyrillic keyboard goes by the key's place", 0x0421, Qt::ControlModifier, u"", 54,
         Code::character, Flags::control, "", "c"},
        {"a command that the layout gives a text", 0x0421, Qt::ControlModifier, u"с", 54, Code::character,
         Flags::control, "", "c"},
        {"a third sign of a layout", Qt::Key_At, Qt::GroupSwitchModifier, u"@", 24, Code::character, 0, "@",
         "@"},
        {"a command on a Greek keyboard", 0x0391, Qt::ControlModifier, u"", 38, Code::character,
         Flags::control, "", "a"},
        {"an unknown place keeps its letter", 0x0421, Qt::ControlModifier, u"", 250, Code::character,
         Flags::control, "", "с"},
        {"outside of the first plane", 0x1f600, none, u"😀", 0, Code::character, 0, "😀", "😀"},
        {"space", Qt::Key_Space, none, u" ", 65, Code::space, 0, " ", " "},
        {"return types nothing", Qt::Key_Return, none, u"\r", 36, Code::returnKey, 0, "", ""},
        {"enter on the keypad", Qt::Key_Enter, Qt::KeypadModifier, u"\r", 104, Code::returnKey, Flags::keypad,
         "", ""},
        {"tab backwards", Qt::Key_Backtab, Qt::ShiftModifier, u"\t", 23, Code::tab, Flags::shift, "", ""},
        {"delete types nothing", Qt::Key_Delete, none, u"\x7f", 119, Code::deleteForward, 0, "", ""},
        {"an arrow", Qt::Key_Left, Qt::ControlModifier, u"", 113, Code::left, Flags::control, "", ""},
        {"the first function key", Qt::Key_F1, none, u"", 67, Code::f1, 0, "", ""},
        {"the last", Qt::Key_F12, none, u"", 96, Code::f12, 0, "", ""},
        {"a key without a meaning", Qt::Key_VolumeUp, none, u"", 123, Code::unknown, 0, "", ""},
    };
    for (const auto& [name, key, modifiers, text, scanCode, code, flags, characters, plain] : cases) {
        SCOPED_TRACE(name);
        QKeyEvent event(QEvent::KeyPress, key, modifiers, scanCode, 0, 0, QString::fromUtf16(text));
        auto press = pressFrom(event, Instant{});
        ASSERT_TRUE(press.has_value());
        EXPECT_EQ(press->key, code);
        EXPECT_EQ(press->modifiers.rawValue, flags);
        EXPECT_EQ(press->characters, characters);
        EXPECT_EQ(press->charactersIgnoringModifiers, plain);
    }
    QKeyEvent shift(QEvent::KeyPress, Qt::Key_Shift, Qt::ShiftModifier);
    EXPECT_FALSE(pressFrom(shift, Instant{}).has_value()) << "a modifier alone is no press";
}

TEST(EventTranslation, says_how_far_a_wheel_goes)
{
    startGraphics(DisplayMode::offscreen);
    using Modifiers = Qt::KeyboardModifiers;
    const std::tuple<std::string_view, QPoint, QPoint, Modifiers, CGVector, bool> cases[] = {
        {"a notch up shows three lines above", {}, {0, 120}, Qt::NoModifier, {0, 54}, false},
        {"two notches down", {}, {0, -240}, Qt::NoModifier, {0, -108}, false},
        {"a part of a notch is a touchpad's", {}, {0, 40}, Qt::NoModifier, {0, 18}, true},
        {"a touchpad's own points", {3, -7}, {8, -20}, Qt::NoModifier, {3, -7}, true},
        {"shift turns a wheel sideways", {}, {0, 120}, Qt::ShiftModifier, {54, 0}, false},
        {"shift leaves what goes sideways already", {}, {120, 0}, Qt::ShiftModifier, {54, 0}, false},
    };
    for (const auto& [name, pixels, angle, modifiers, delta, isPrecise] : cases) {
        SCOPED_TRACE(name);
        QWheelEvent event(QPointF(4, 5), QPointF(), pixels, angle, Qt::NoButton, modifiers, Qt::NoScrollPhase,
                          false);
        auto wheel = wheelFrom(event, Instant{});
        EXPECT_EQ(wheel.delta, delta);
        EXPECT_EQ(wheel.isPrecise, isPrecise);
        EXPECT_EQ(wheel.windowLocation, (CGPoint{4, 5}));
    }
}

TEST(ClickCounter, counts_presses_that_belong_together)
{
    using Press = std::tuple<UIPointerButton, CGPoint, Duration, int>;
    constexpr auto left = UIPointerButton::primary, right = UIPointerButton::secondary;
    const std::pair<std::string_view, std::vector<Press>> cases[] = {
        {"in time and place", {{left, {0, 0}, 0ms, 1}, {left, {5, -5}, 400ms, 2}, {left, {5, 0}, 800ms, 3}}},
        {"too late by a little",
         {{left, {0, 0}, 0ms, 1}, {left, {0, 0}, 401ms, 1}, {left, {0, 0}, 500ms, 2}}},
        {"too far", {{left, {0, 0}, 0ms, 1}, {left, {6, 0}, 100ms, 1}, {left, {6, 0}, 200ms, 2}}},
        {"another button", {{left, {0, 0}, 0ms, 1}, {right, {0, 0}, 100ms, 1}, {left, {0, 0}, 200ms, 1}}},
    };
    for (const auto& [name, presses] : cases) {
        SCOPED_TRACE(name);
        ClickCounter counter(400ms, 5);
        for (const auto& [button, place, time, count] : presses)
            EXPECT_EQ(counter.press(button, place, Instant(time)), count);
    }
}

} // namespace
