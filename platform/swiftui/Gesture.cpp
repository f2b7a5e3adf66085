// SPDX-License-Identifier: MIT
#include "platform/swiftui/Gesture.h"

#include "platform/uikit/UILongPressGestureRecognizer.h"
#include "platform/uikit/UIPanGestureRecognizer.h"
#include "platform/uikit/UITapGestureRecognizer.h"
#include "platform/uikit/UIView.h"
#include "platform/uikit/UIWindow.h"

#include <algorithm>

namespace platform {

namespace {

// What a finger's speed carries it further, in seconds of that speed.
constexpr double glide = 0.25;

// Begins with the press when no distance is asked for, and knows when it changed last.
class DragRecognizer : public UIPanGestureRecognizer {
public:
    Instant time{};

    void touchBegan(UITouch& touch) override
    {
        time = touch.timestamp;
        UIPanGestureRecognizer::touchBegan(touch);
        if (state() == UIGestureRecognizerState::possible && minimumDistance <= 0)
            setState(UIGestureRecognizerState::began);
    }
    void touchMoved(UITouch& touch) override
    {
        time = touch.timestamp;
        UIPanGestureRecognizer::touchMoved(touch);
    }
    void touchEnded(UITouch& touch) override
    {
        time = touch.timestamp;
        UIPanGestureRecognizer::touchEnded(touch);
    }
};

CGVector vectorOf(CGPoint point)
{
    return {point.x, point.y};
}

DragGesture::Value valueOf(const DragRecognizer& drag, const UIView& space)
{
    auto location = drag.location(space);
    auto way = drag.translation(space);
    auto velocity = vectorOf(drag.velocity(space));
    return {.time = drag.time,
            .startLocation = location - way,
            .location = location,
            .translation = vectorOf(way),
            .velocity = velocity,
            .predictedEndTranslation = {way.x + velocity.dx * glide, way.y + velocity.dy * glide}};
}

} // namespace

// --- Tap -------------------------------------------------------------------------------------------

TapGesture TapGesture::onEnded(std::function<void()> action) const
{
    auto changed = *this;
    changed.ended = std::move(action);
    return changed;
}

std::shared_ptr<UIGestureRecognizer> TapGesture::makeRecognizer()
{
    return std::make_shared<UITapGestureRecognizer>();
}

void TapGesture::setUp(UIGestureRecognizer& recognizer) const
{
    static_cast<UITapGestureRecognizer&>(recognizer).numberOfTapsRequired =
        static_cast<std::size_t>(std::max(count, 1));
}

void TapGesture::handleChange(UIGestureRecognizer& recognizer, UIView&) const
{
    if (ended && recognizer.state() == UIGestureRecognizerState::ended)
        ended();
}

// --- Long press ------------------------------------------------------------------------------------

LongPressGesture LongPressGesture::onEnded(std::function<void()> action) const
{
    auto changed = *this;
    changed.ended = std::move(action);
    return changed;
}

std::shared_ptr<UIGestureRecognizer> LongPressGesture::makeRecognizer()
{
    return std::make_shared<UILongPressGestureRecognizer>();
}

void LongPressGesture::setUp(UIGestureRecognizer& recognizer) const
{
    auto& press = static_cast<UILongPressGestureRecognizer&>(recognizer);
    press.minimumPressDuration = minimumDuration;
    press.allowableMovement = maximumDistance;
}

void LongPressGesture::handleChange(UIGestureRecognizer& recognizer, UIView&) const
{
    if (ended && recognizer.state() == UIGestureRecognizerState::began)
        ended();
}

// --- Drag ------------------------------------------------------------------------------------------

DragGesture DragGesture::onChanged(Action action) const
{
    auto with = *this;
    with.changed = std::move(action);
    return with;
}

DragGesture DragGesture::onEnded(Action action) const
{
    auto with = *this;
    with.ended = std::move(action);
    return with;
}

DragGesture DragGesture::onCancelled(std::function<void()> action) const
{
    auto with = *this;
    with.cancelled = std::move(action);
    return with;
}

std::shared_ptr<UIGestureRecognizer> DragGesture::makeRecognizer()
{
    return std::make_shared<DragRecognizer>();
}

void DragGesture::setUp(UIGestureRecognizer& recognizer) const
{
    static_cast<DragRecognizer&>(recognizer).minimumDistance = minimumDistance;
}

void DragGesture::handleChange(UIGestureRecognizer& recognizer, UIView& local) const
{
    auto& drag = static_cast<DragRecognizer&>(recognizer);
    auto window = local.window();
    auto& space = coordinateSpace == CoordinateSpace::global && window ? *window : local;
    switch (recognizer.state()) {
    case UIGestureRecognizerState::began:
    case UIGestureRecognizerState::changed:
        if (changed)
            changed(valueOf(drag, space));
        return;
    case UIGestureRecognizerState::ended:
        if (ended)
            ended(valueOf(drag, space));
        return;
    case UIGestureRecognizerState::cancelled:
        if (cancelled)
            cancelled();
        return;
    case UIGestureRecognizerState::possible:
    case UIGestureRecognizerState::failed:
        return;
    }
}

} // namespace platform
