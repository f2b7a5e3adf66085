// SPDX-License-Identifier: MIT
#include "platform/uikit/UIGestureRecognizer.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Precondition.h"
#include "platform/uikit/GestureArena.h"
#include "platform/uikit/UIView.h"

#include <algorithm>
#include <utility>

namespace platform {

UIGestureRecognizer::UIGestureRecognizer(Action action)
    : onChange(std::move(action))
{
}

UIGestureRecognizer::~UIGestureRecognizer()
{
    if (arena_)
        arena_->forget(*this);
}

void UIGestureRecognizer::setEnabled(bool enabled)
{
    assertOnMainThread();
    if (isEnabled_ == enabled)
        return;
    isEnabled_ = enabled;
    if (!enabled)
        cancel();
}

void UIGestureRecognizer::cancel()
{
    auto self = shared_from_this(); // onChange may drop the last reference
    if (state_ == UIGestureRecognizerState::began || state_ == UIGestureRecognizerState::changed)
        setState(UIGestureRecognizerState::cancelled);
    else if (arena_ && state_ == UIGestureRecognizerState::possible)
        setState(UIGestureRecognizerState::failed);
}

std::shared_ptr<UIView> UIGestureRecognizer::view() const
{
    return view_ ? std::static_pointer_cast<UIView>(view_->weak_from_this().lock()) : nullptr;
}

void UIGestureRecognizer::requireToFail(std::shared_ptr<UIGestureRecognizer> other)
{
    mustFailFirst_.push_back(other);
}

CGPoint UIGestureRecognizer::location(const UIView& in) const
{
    if (touches_.empty())
        return in.convertFrom(lastWindowLocation_, nullptr);
    CGPoint sum;
    for (auto* touch : touches_)
        sum = sum + touch->windowLocation;
    auto count = static_cast<CGFloat>(touches_.size());
    return in.convertFrom(CGPoint{sum.x / count, sum.y / count}, nullptr);
}

void UIGestureRecognizer::touchBegan(UITouch& touch)
{
    touches_.push_back(&touch);
    lastWindowLocation_ = touch.windowLocation;
}

void UIGestureRecognizer::touchEnded(UITouch& touch)
{
    lastWindowLocation_ = touch.windowLocation;
    std::erase(touches_, &touch);
}

void UIGestureRecognizer::touchCancelled(UITouch& touch)
{
    UIGestureRecognizer::touchEnded(touch); // not the subclass's, which may recognise in it
    if (!touches_.empty())
        return;
    if (state_ == UIGestureRecognizerState::began || state_ == UIGestureRecognizerState::changed)
        setState(UIGestureRecognizerState::cancelled);
    else if (state_ == UIGestureRecognizerState::possible)
        setState(UIGestureRecognizerState::failed);
}

void UIGestureRecognizer::reset()
{
    touches_.clear();
    heldState_.reset();
    state_ = UIGestureRecognizerState::possible;
}

void UIGestureRecognizer::setState(UIGestureRecognizerState state)
{
    assertOnMainThread();
    if (arena_) {
        arena_->wantsState(*this, state);
        return;
    }
    // Outside of any contest, as a hover is.
    auto self = shared_from_this();
    state_ = state;
    if (onChange && state != UIGestureRecognizerState::possible && state != UIGestureRecognizerState::failed)
        std::invoke(Action(onChange), *this); // a copy: it may replace itself
    if (state_ == UIGestureRecognizerState::ended || state_ == UIGestureRecognizerState::cancelled
        || state_ == UIGestureRecognizerState::failed)
        reset();
}

void UIView::addGestureRecognizer(std::shared_ptr<UIGestureRecognizer> recognizer)
{
    assertOnMainThread();
    precondition(recognizer != nullptr, "a null gesture recogniser was added");
    if (auto former = recognizer->view()) {
        if (former.get() == this)
            return;
        former->removeGestureRecognizer(*recognizer);
    }
    recognizer->view_ = this;
    gestureRecognizers_.push_back(std::move(recognizer));
}

void UIView::removeGestureRecognizer(const UIGestureRecognizer& recognizer)
{
    assertOnMainThread();
    auto found =
        std::ranges::find(gestureRecognizers_, &recognizer, &std::shared_ptr<UIGestureRecognizer>::get);
    if (found == gestureRecognizers_.end())
        return;
    auto removed = *found;
    gestureRecognizers_.erase(found);
    removed->cancel();
    removed->view_ = nullptr;
}

} // namespace platform
