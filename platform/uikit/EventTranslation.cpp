// SPDX-License-Identifier: MIT
#include "platform/uikit/EventTranslation_p.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QStyleHints>

#include <array>
#include <string_view>
#include <utility>

namespace platform {

UIKeyModifierFlags modifiersFrom(Qt::KeyboardModifiers modifiers)
{
    UIKeyModifierFlags result;
    auto take = [&](Qt::KeyboardModifier modifier, std::uint8_t flag) {
        if (modifiers.testFlag(modifier))
            result.rawValue |= flag;
    };
    take(Qt::ShiftModifier, UIKeyModifierFlags::shift);
    take(Qt::ControlModifier, UIKeyModifierFlags::control);
    take(Qt::AltModifier, UIKeyModifierFlags::alternate);
    take(Qt::MetaModifier, UIKeyModifierFlags::command);
    take(Qt::KeypadModifier, UIKeyModifierFlags::keypad);
    return result;
}

std::optional<UIPointerButton> buttonFrom(Qt::MouseButton button)
{
    switch (button) {
    case Qt::LeftButton:
        return UIPointerButton::primary;
    case Qt::RightButton:
        return UIPointerButton::secondary;
    case Qt::MiddleButton:
        return UIPointerButton::middle;
    default:
        return std::nullopt;
    }
}

namespace {

UIKeyCode keyCodeFrom(int key)
{
    static constexpr std::pair<int, UIKeyCode> codes[] = {
        {Qt::Key_Escape, UIKeyCode::escape},
        {Qt::Key_Space, UIKeyCode::space},
        {Qt::Key_Tab, UIKeyCode::tab},
        {Qt::Key_Backtab, UIKeyCode::tab},
        {Qt::Key_Return, UIKeyCode::returnKey},
        {Qt::Key_Enter, UIKeyCode::returnKey},
        {Qt::Key_Backspace, UIKeyCode::deleteBackward},
        {Qt::Key_Delete, UIKeyCode::deleteForward},
        {Qt::Key_Insert, UIKeyCode::insert},
        {Qt::Key_Left, UIKeyCode::left},
        {Qt::Key_Right, UIKeyCode::right},
        {Qt::Key_Up, UIKeyCode::up},
        {Qt::Key_Down, UIKeyCode::down},
        {Qt::Key_PageUp, UIKeyCode::pageUp},
        {Qt::Key_PageDown, UIKeyCode::pageDown},
        {Qt::Key_Home, UIKeyCode::home},
        {Qt::Key_End, UIKeyCode::end},
    };
    for (auto [theirs, ours] : codes) {
        if (theirs == key)
            return ours;
    }
    if (key >= Qt::Key_F1 && key <= Qt::Key_F12)
        return static_cast<UIKeyCode>(static_cast<int>(UIKeyCode::f1) + key - Qt::Key_F1);
    return UIKeyCode::unknown;
}

bool isModifierKey(int key)
{
    return (key >= Qt::Key_Shift && key <= Qt::Key_ScrollLock) || key == Qt::Key_AltGr
        || key == Qt::Key_Super_L || key == Qt::Key_Super_R || key == Qt::Key_Hyper_L
        || key == Qt::Key_Hyper_R;
}

bool isPrintable(const QString& text)
{
    return !text.isEmpty() && text.front().unicode() >= 0x20 && text.front().unicode() != 0x7f;
}

// What the key types on a keyboard with Latin letters, by where it is. Shortcuts keep their places under layouts
// whose own letters are others.
char latinAt(quint32 scanCode)
{
    // Linux numbers keys by rows; the window systems add 8.
    using Row = std::pair<quint32, std::string_view>;
    static constexpr std::array<Row, 4> rows = {Row{2, "1234567890-="}, Row{16, "qwertyuiop[]"},
                                                Row{30, "asdfghjkl;'`"}, Row{44, "zxcvbnm,./"}};
    for (const auto& [first, letters] : rows) {
        if (scanCode >= first + 8 && scanCode < first + 8 + letters.size())
            return letters[scanCode - first - 8];
    }
    return 0;
}

// Held with a key that makes it a command. The key that gives a layout's third signs is none of these.
bool isCommand(const QKeyEvent& event)
{
    return event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
}

QString plainCharacter(const QKeyEvent& event)
{
    auto key = event.key();
    if (key < Qt::Key_Space || key >= Qt::Key_Escape)
        return {};
    auto character = static_cast<char32_t>(key);
    if (isCommand(event) && character >= 0x80) {
        if (auto latin = latinAt(event.nativeScanCode()))
            return QString(QLatin1Char(latin));
    }
    return QString::fromUcs4(&character, 1).toLower();
}

} // namespace

std::optional<UIPress> pressFrom(const QKeyEvent& event, Instant time)
{
    if (isModifierKey(event.key()))
        return std::nullopt;
    UIPress press;
    press.key = keyCodeFrom(event.key());
    press.modifiers = modifiersFrom(event.modifiers());
    if (!isCommand(event) && isPrintable(event.text()))
        press.characters = event.text().toStdString();
    press.charactersIgnoringModifiers = plainCharacter(event).toStdString();
    if (press.key == UIKeyCode::unknown
        && (!press.characters.empty() || !press.charactersIgnoringModifiers.empty()))
        press.key = UIKeyCode::character;
    if (event.key() == Qt::Key_Backtab)
        press.modifiers.rawValue |= UIKeyModifierFlags::shift;
    press.isRepeat = event.isAutoRepeat();
    press.timestamp = time;
    return press;
}

UIScrollWheel wheelFrom(const QWheelEvent& event, Instant time)
{
    constexpr CGFloat unitsPerNotch = 120;
    constexpr CGFloat pointsPerLine = 18;

    UIScrollWheel wheel;
    wheel.modifiers = modifiersFrom(event.modifiers());
    wheel.windowLocation = pointFrom(event.position());
    wheel.timestamp = time;
    wheel.isMomentum = event.phase() == Qt::ScrollMomentum;
    // X11 drivers fill in distances that mean nothing; touchpads are known there by their notches' fractions.
    static const bool distancesAreReal = QGuiApplication::platformName() != QLatin1String("xcb");
    if (distancesAreReal && !event.pixelDelta().isNull()) {
        wheel.isPrecise = true;
        wheel.delta = {CGFloat(event.pixelDelta().x()), CGFloat(event.pixelDelta().y())};
    } else {
        auto pointsPerNotch = QGuiApplication::styleHints()->wheelScrollLines() * pointsPerLine;
        auto angle = event.angleDelta();
        wheel.isPrecise = angle.x() % int(unitsPerNotch) != 0 || angle.y() % int(unitsPerNotch) != 0;
        wheel.delta = {angle.x() / unitsPerNotch * pointsPerNotch,
                       angle.y() / unitsPerNotch * pointsPerNotch};
    }
    if (wheel.modifiers.contains(UIKeyModifierFlags::shift) && wheel.delta.dx == 0)
        std::swap(wheel.delta.dx, wheel.delta.dy);
    return wheel;
}

} // namespace platform
