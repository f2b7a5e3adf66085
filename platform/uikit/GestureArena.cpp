// SPDX-License-Identifier: MIT
#include "platform/uikit/GestureArena.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/UIControl.h"
#include "platform/uikit/UIHoverGestureRecognizer.h"
#include "platform/uikit/UIWindow.h"

#include <algorithm>
#include <utility>

namespace platform {

using RecognizerState = UIGestureRecognizerState;
using Recognizers = std::vector<std::shared_ptr<UIGestureRecognizer>>;

namespace {

bool hasBegun(RecognizerState state)
{
    return state == RecognizerState::began || state == RecognizerState::changed;
}

bool isOver(RecognizerState state)
{
    return state == RecognizerState::ended || state == RecognizerState::cancelled
        || state == RecognizerState::failed;
}

bool allowSimultaneity(UIGestureRecognizer& a, UIGestureRecognizer& b)
{
    return (a.shouldRecognizeSimultaneously && a.shouldRecognizeSimultaneously(a, b))
        || (b.shouldRecognizeSimultaneously && b.shouldRecognizeSimultaneously(b, a));
}

// The recognisers of the view and of those around it, innermost first, without those that a control in between
// keeps away.
Recognizers recognizersAround(const std::shared_ptr<UIView>& hit)
{
    Recognizers result;
    std::vector<std::shared_ptr<UIControl>> controls;
    for (auto view = hit; view; view = view->superview()) {
        for (auto& recognizer : view->gestureRecognizers()) {
            auto isKeptAway = std::ranges::any_of(
                controls, [&](auto& control) { return control->keepsTouchesFrom(*recognizer); });
            if (!isKeptAway && recognizer->isEnabled())
                result.push_back(recognizer);
        }
        if (auto control = std::dynamic_pointer_cast<UIControl>(view))
            controls.push_back(std::move(control));
    }
    return result;
}

} // namespace

// Every call out may do anything, end the arena included: what is walked is a copy, whoever is called is held, and
// `isGone` is looked at afterwards.
struct GestureArena::State {
    struct Tracked {
        UITouch* touch = nullptr;
        bool isKnownToView = false;
        bool isTakenFromView = false; // a recogniser has cancelled it there
        std::vector<std::weak_ptr<UIGestureRecognizer>> recognizers;

        bool isSeenBy(const UIGestureRecognizer& recognizer) const
        {
            return std::ranges::any_of(recognizers,
                                       [&](auto& seen) { return seen.lock().get() == &recognizer; });
        }
    };

    Tracked* find(const UITouch& touch)
    {
        auto found = std::ranges::find(touches, &touch, &Tracked::touch);
        return found == touches.end() ? nullptr : &*found;
    }
    Recognizers watchersOf(const UITouch& touch);
    bool shareTouch(const UIGestureRecognizer& a, const UIGestureRecognizer& b) const;
    bool isAttached(UIGestureRecognizer& recognizer) const;
    Recognizers busy() const;

    void begin(UITouch& touch);
    void deliver(UITouch& touch);
    void deliverToView(UITouch& touch);
    void takeFromViews(UIGestureRecognizer& winner);
    void wants(UIGestureRecognizer& recognizer, RecognizerState state);
    void tryToBegin(UIGestureRecognizer& recognizer, RecognizerState state);
    void win(UIGestureRecognizer& recognizer, RecognizerState state);
    void change(UIGestureRecognizer& recognizer, RecognizerState state);
    void settle();
    bool resolveHeld();
    void release();

    GestureArena* arena = nullptr;
    UIWindow* window = nullptr;
    bool isGone = false;
    int depth = 0; // of send; what is over is reset when the outermost has finished
    std::vector<Tracked> touches;
    std::vector<UIGestureRecognizer*> engaged; // each has `arena_` set, and takes itself out before it goes
    std::vector<std::weak_ptr<UIHoverGestureRecognizer>> hovered;
};

GestureArena::GestureArena(UIWindow& window)
    : state_(std::make_shared<State>())
{
    state_->arena = this;
    state_->window = &window;
}

GestureArena::~GestureArena()
{
    state_->isGone = true;
    for (auto& recognizer : state_->busy()) {
        recognizer->arena_ = nullptr;
        recognizer->reset();
    }
    state_->engaged.clear();
}

void GestureArena::send(UITouch& touch)
{
    assertOnMainThread();
    auto state = state_; // `this` may go in any call out
    ++state->depth;
    if (touch.phase == UITouchPhase::began)
        state->begin(touch);
    else if (state->find(touch))
        state->deliver(touch);
    --state->depth;
    if (!state->isGone)
        state->settle();
}

void GestureArena::cancelAll()
{
    assertOnMainThread();
    auto state = state_;
    while (!state->isGone && !state->touches.empty()) {
        auto& touch = *state->touches.front().touch;
        touch.phase = UITouchPhase::cancelled;
        ++state->depth;
        state->deliver(touch);
        --state->depth;
    }
    if (!state->isGone)
        state->settle();
}

void GestureArena::pointerMoved(CGPoint windowLocation, const std::shared_ptr<UIView>& hit)
{
    assertOnMainThread();
    auto state = state_;
    std::vector<std::shared_ptr<UIHoverGestureRecognizer>> present;
    for (auto& recognizer : recognizersAround(hit))
        if (auto hover = std::dynamic_pointer_cast<UIHoverGestureRecognizer>(recognizer))
            present.push_back(std::move(hover));
    auto before = std::exchange(state->hovered, {present.begin(), present.end()});
    for (auto& weak : before)
        if (auto hover = weak.lock(); hover && std::ranges::find(present, hover) == present.end())
            hover->pointerLeft();
    for (auto& hover : present)
        hover->pointerMoved(windowLocation);
}

void GestureArena::pointerLeft()
{
    for (auto& weak : std::exchange(state_->hovered, {}))
        if (auto hover = weak.lock())
            hover->pointerLeft();
}

void GestureArena::wantsState(UIGestureRecognizer& recognizer, UIGestureRecognizerState state)
{
    auto keep = state_;
    auto held = recognizer.shared_from_this();
    keep->wants(recognizer, state);
    if (!keep->isGone)
        keep->settle();
}

void GestureArena::forget(UIGestureRecognizer& recognizer)
{
    std::erase(state_->engaged, &recognizer);
}

Recognizers GestureArena::State::watchersOf(const UITouch& touch)
{
    Recognizers result;
    if (auto* tracked = find(touch))
        for (auto& weak : tracked->recognizers)
            if (auto recognizer = weak.lock())
                result.push_back(std::move(recognizer));
    return result;
}

Recognizers GestureArena::State::busy() const
{
    Recognizers result;
    for (auto* recognizer : engaged)
        if (auto held = std::static_pointer_cast<UIGestureRecognizer>(recognizer->weak_from_this().lock()))
            result.push_back(std::move(held));
    return result;
}

bool GestureArena::State::shareTouch(const UIGestureRecognizer& a, const UIGestureRecognizer& b) const
{
    return std::ranges::any_of(touches,
                               [&](auto& tracked) { return tracked.isSeenBy(a) && tracked.isSeenBy(b); });
}

bool GestureArena::State::isAttached(UIGestureRecognizer& recognizer) const
{
    auto view = recognizer.view();
    return view && view->window().get() == window;
}

void GestureArena::State::begin(UITouch& touch)
{
    if (find(touch))
        return; // it has begun already
    auto candidates = recognizersAround(touch.view.lock());
    std::erase_if(candidates, [&](auto& recognizer) {
        return dynamic_cast<UIHoverGestureRecognizer*>(recognizer.get()) || isOver(recognizer->state_)
            || (recognizer->arena_ && recognizer->arena_ != arena)
            || (recognizer->shouldReceive && !recognizer->shouldReceive(*recognizer, touch));
    });
    if (isGone)
        return;
    Tracked tracked{.touch = &touch};
    // All take part before the first is told: one that has to wait for another must know that it is there.
    for (auto& recognizer : candidates) {
        tracked.recognizers.push_back(recognizer);
        if (!std::exchange(recognizer->arena_, arena))
            engaged.push_back(recognizer.get());
    }
    touches.push_back(std::move(tracked));
    deliver(touch);
}

void GestureArena::State::deliver(UITouch& touch)
{
    for (auto& recognizer : watchersOf(touch)) {
        if (isGone || !find(touch))
            return;
        if (!isOver(recognizer->state_) && !isAttached(*recognizer))
            wants(*recognizer, RecognizerState::cancelled);
        recognizer->lastWindowLocation_ = touch.windowLocation;
        auto isEnd = touch.phase == UITouchPhase::ended || touch.phase == UITouchPhase::cancelled;
        if (isOver(recognizer->state_)) {
            if (isEnd)
                std::erase(recognizer->touches_, &touch);
        } else if (touch.phase == UITouchPhase::began) {
            recognizer->touchBegan(touch);
        } else if (touch.phase == UITouchPhase::ended) {
            recognizer->touchEnded(touch);
        } else if (touch.phase == UITouchPhase::cancelled) {
            recognizer->touchCancelled(touch);
        } else {
            recognizer->touchMoved(touch);
        }
        if (!isGone && isEnd)
            std::erase(recognizer->touches_, &touch); // whatever it made of it, the touch is about to go
    }
    if (isGone)
        return;
    deliverToView(touch);
    if (!isGone && (touch.phase == UITouchPhase::ended || touch.phase == UITouchPhase::cancelled))
        std::erase_if(touches, [&](auto& tracked) { return tracked.touch == &touch; });
}

void GestureArena::State::deliverToView(UITouch& touch)
{
    auto* tracked = find(touch);
    auto view = touch.view.lock();
    if (!tracked || tracked->isTakenFromView || !view)
        return;
    tracked->isKnownToView = true;
    switch (touch.phase) {
    case UITouchPhase::began:
        return view->touchesBegan(touch);
    case UITouchPhase::moved:
        return view->touchesMoved(touch);
    case UITouchPhase::stationary:
        return;
    case UITouchPhase::ended:
        return view->touchesEnded(touch);
    case UITouchPhase::cancelled:
        return view->touchesCancelled(touch);
    }
}

void GestureArena::State::takeFromViews(UIGestureRecognizer& winner)
{
    std::vector<UITouch*> taken;
    for (auto& tracked : touches)
        if (tracked.isSeenBy(winner) && !std::exchange(tracked.isTakenFromView, true)
            && tracked.isKnownToView)
            taken.push_back(tracked.touch);
    for (auto* touch : taken) {
        if (isGone || !find(*touch))
            return;
        if (auto view = touch->view.lock()) {
            auto phase = std::exchange(touch->phase, UITouchPhase::cancelled);
            view->touchesCancelled(*touch);
            touch->phase = phase;
        }
    }
}

void GestureArena::State::wants(UIGestureRecognizer& recognizer, RecognizerState state)
{
    auto present = recognizer.state_;
    if (isOver(present))
        return;
    if (hasBegun(present)) {
        change(recognizer, state == RecognizerState::failed ? RecognizerState::cancelled : state);
    } else if (state == RecognizerState::failed || state == RecognizerState::cancelled) {
        recognizer.heldState_.reset();
        recognizer.state_ = RecognizerState::failed;
    } else if (recognizer.heldState_ == RecognizerState::began) {
        // What ends before it was allowed to begin has never been.
        if (state == RecognizerState::ended)
            recognizer.state_ = RecognizerState::failed;
    } else if (!recognizer.heldState_ && state != RecognizerState::possible) {
        tryToBegin(recognizer, state);
    }
}

void GestureArena::State::tryToBegin(UIGestureRecognizer& recognizer, RecognizerState state)
{
    if (recognizer.shouldBegin && !recognizer.shouldBegin(recognizer)) {
        recognizer.state_ = RecognizerState::failed;
        return;
    }
    for (auto& other : busy()) {
        if (isGone || isOver(recognizer.state_))
            return;
        auto isFirst = hasBegun(other->state_) || other->state_ == RecognizerState::ended;
        if (other.get() != &recognizer && isFirst && shareTouch(recognizer, *other)
            && other->canPrevent(recognizer) && !allowSimultaneity(recognizer, *other)) {
            recognizer.state_ = RecognizerState::failed;
            return;
        }
    }
    recognizer.heldState_ = state;
    resolveHeld();
}

void GestureArena::State::win(UIGestureRecognizer& recognizer, RecognizerState state)
{
    recognizer.heldState_.reset();
    recognizer.state_ = state;
    for (auto& other : busy())
        if (other.get() != &recognizer && other->state_ == RecognizerState::possible
            && shareTouch(recognizer, *other) && recognizer.canPrevent(*other)
            && !allowSimultaneity(recognizer, *other)) {
            other->heldState_.reset();
            other->state_ = RecognizerState::failed;
        }
    if (recognizer.cancelsTouchesInView)
        takeFromViews(recognizer);
    if (!isGone && recognizer.state_ == state)
        change(recognizer, state);
}

void GestureArena::State::change(UIGestureRecognizer& recognizer, RecognizerState state)
{
    recognizer.state_ = state;
    if (recognizer.onChange)
        std::invoke(UIGestureRecognizer::Action(recognizer.onChange),
                    recognizer); // a copy: it may replace itself
}

// Lets those begin whose predecessors have all failed, and fail whose predecessors have not.
bool GestureArena::State::resolveHeld()
{
    auto hasChanged = false;
    for (auto& recognizer : busy()) {
        if (isGone)
            return false;
        if (!recognizer->heldState_ || recognizer->arena_ != arena)
            continue;
        auto mustWait = false, isBeaten = false;
        for (auto& weak : recognizer->mustFailFirst_)
            if (auto other = weak.lock(); other && other->arena_ == arena) {
                mustWait |= other->state_ == RecognizerState::possible;
                isBeaten |= hasBegun(other->state_) || other->state_ == RecognizerState::ended;
            }
        if (isBeaten) {
            recognizer->heldState_.reset();
            recognizer->state_ = RecognizerState::failed;
        } else if (!mustWait) {
            win(*recognizer, *recognizer->heldState_);
        }
        hasChanged |= isBeaten || !mustWait;
    }
    return hasChanged;
}

void GestureArena::State::settle()
{
    while (!isGone && resolveHeld()) { }
    if (!isGone && depth == 0)
        release();
}

// Those that are over, and whose touches are gone, start afresh.
void GestureArena::State::release()
{
    for (auto& recognizer : busy()) {
        auto isWatching =
            std::ranges::any_of(touches, [&](auto& tracked) { return tracked.isSeenBy(*recognizer); });
        auto isWaiting = recognizer->state_ == RecognizerState::possible
            && (recognizer->heldState_ || recognizer->isAwaitingTouches());
        if (isWatching || isWaiting)
            continue;
        std::erase(engaged, recognizer.get());
        recognizer->arena_ = nullptr;
        recognizer->reset();
    }
}

} // namespace platform
