// SPDX-License-Identifier: MIT
#include "platform/uikit/PointerInput_p.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/EventTranslation_p.h"
#include "platform/uikit/UIWindow.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QMouseEvent>
#include <QtGui/QStyleHints>
#include <QtGui/QTabletEvent>
#include <QtGui/QTouchEvent>

#include <vector>

namespace platform {

PointerInput::PointerInput()
    : clicks_(std::chrono::milliseconds(QGuiApplication::styleHints()->mouseDoubleClickInterval()),
              QGuiApplication::styleHints()->mouseDoubleClickDistance())
{
}

void PointerInput::begin(UIWindow& window, Key key, UITouch touch)
{
    if (touches_.contains(key))
        end(window, key, touch.windowLocation, UITouchPhase::cancelled);
    touch.phase = UITouchPhase::began;
    touch.previousWindowLocation = touch.windowLocation;
    auto& kept = touches_[key] = std::make_unique<UITouch>(std::move(touch));
    window.sendTouch(*kept);
}

void PointerInput::move(UIWindow& window, Key key, CGPoint place)
{
    auto found = touches_.find(key);
    if (found == touches_.end() || found->second->windowLocation == place)
        return;
    auto& touch = *found->second;
    touch.phase = UITouchPhase::moved;
    touch.previousWindowLocation = std::exchange(touch.windowLocation, place);
    touch.timestamp = RunLoop::main().clock().now();
    window.sendTouch(touch);
}

void PointerInput::end(UIWindow& window, Key key, CGPoint place, UITouchPhase phase)
{
    auto found = touches_.find(key);
    if (found == touches_.end())
        return;
    // Taken out first: a view may run events of its own while it is told.
    auto touch = std::move(found->second);
    touches_.erase(found);
    touch->phase = phase;
    touch->previousWindowLocation = std::exchange(touch->windowLocation, place);
    touch->timestamp = RunLoop::main().clock().now();
    window.sendTouch(*touch);
}

void PointerInput::cancelAll(UIWindow& window)
{
    while (!touches_.empty()) {
        auto& [key, touch] = *touches_.begin();
        end(window, key, touch->windowLocation, UITouchPhase::cancelled);
    }
}

void PointerInput::handle(UIWindow& window, const QMouseEvent& event)
{
    auto place = pointFrom(event.position());
    auto now = RunLoop::main().clock().now();
    switch (event.type()) {
    case QEvent::MouseButtonPress: // a double click comes besides, as an event that is not looked at
        if (auto button = buttonFrom(event.button())) {
            // The window system's own time stamps, where there are any: a busy program must not stretch clicks.
            auto stamp = event.timestamp() ? Instant(std::chrono::milliseconds(event.timestamp())) : now;
            begin(window, {Source::mouse, int(*button)},
                  {.button = *button,
                   .modifiers = modifiersFrom(event.modifiers()),
                   .tapCount = clicks_.press(*button, place, stamp),
                   .timestamp = now,
                   .windowLocation = place});
        }
        break;
    case QEvent::MouseButtonRelease:
        if (auto button = buttonFrom(event.button()))
            end(window, {Source::mouse, int(*button)}, place, UITouchPhase::ended);
        break;
    case QEvent::MouseMove: {
        auto isMouse = [](const auto& entry) { return entry.first.first == Source::mouse; };
        if (event.buttons() == Qt::NoButton) {
            // A release that went elsewhere.
            while (!touches_.empty() && isMouse(*touches_.begin()))
                end(window, touches_.begin()->first, place, UITouchPhase::cancelled);
            window.sendHover(place);
            break;
        }
        std::vector<Key> down;
        for (const auto& entry : touches_) {
            if (isMouse(entry))
                down.push_back(entry.first);
        }
        for (auto key : down)
            move(window, key, place);
        break;
    }
    default:
        break;
    }
}

void PointerInput::handle(UIWindow& window, const QTouchEvent& event)
{
    if (event.type() == QEvent::TouchCancel) {
        cancelAll(window);
        return;
    }
    auto now = RunLoop::main().clock().now();
    for (const auto& point : event.points()) {
        Key key{Source::touch, point.id()};
        auto place = pointFrom(point.position());
        switch (point.state()) {
        case QEventPoint::Pressed:
            begin(window, key,
                  {.type = UITouchType::finger,
                   .modifiers = modifiersFrom(event.modifiers()),
                   .tapCount = clicks_.press(UIPointerButton::primary, place, now),
                   .timestamp = now,
                   .windowLocation = place});
            break;
        case QEventPoint::Updated:
            move(window, key, place);
            break;
        case QEventPoint::Released:
            end(window, key, place, UITouchPhase::ended);
            break;
        default:
            break;
        }
    }
}

void PointerInput::handle(UIWindow& window, const QTabletEvent& event)
{
    auto place = pointFrom(event.position());
    auto now = RunLoop::main().clock().now();
    Key key{Source::pen, 0};
    switch (event.type()) {
    case QEvent::TabletPress:
        begin(window, key,
              {.type = UITouchType::pen,
               .button = buttonFrom(event.button()).value_or(UIPointerButton::primary),
               .modifiers = modifiersFrom(event.modifiers()),
               .tapCount = clicks_.press(UIPointerButton::primary, place, now),
               .timestamp = now,
               .windowLocation = place});
        break;
    case QEvent::TabletMove:
        if (touches_.contains(key))
            move(window, key, place);
        else
            window.sendHover(place);
        break;
    case QEvent::TabletRelease:
        end(window, key, place, UITouchPhase::ended);
        break;
    default:
        break;
    }
}

} // namespace platform
