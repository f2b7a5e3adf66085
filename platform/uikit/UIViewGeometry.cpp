// SPDX-License-Identifier: MIT
// Where a view is: frame, bounds, centre, transform, as set and as on screen, and the maps between views.
#include "platform/uikit/UIView.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Precondition.h"
#include "platform/uikit/UIViewController.h"
#include "platform/uikit/UIWindow.h"
#include "platform/uikit/ViewAnimator.h"
#include "platform/uikit/ViewLayout.h"

#include <cmath>

namespace platform {

namespace {

using Property = ViewAnimator::Property;

AnimatableNumbers numbers(const CGRect& rect)
{
    return {{rect.origin.x, rect.origin.y, rect.size.width, rect.size.height}, 4};
}

AnimatableNumbers numbers(CGPoint point)
{
    return {{point.x, point.y}, 2};
}

AnimatableNumbers numbers(const CGAffineTransform& map)
{
    return {{map.a, map.b, map.c, map.d, map.tx, map.ty}, 6};
}

void requireFinite(std::initializer_list<CGFloat> values)
{
    for (auto value : values)
        precondition(std::isfinite(value), "a view's geometry was set to something that is no finite number");
}

// Around a point of the superview, with the bounds' middle put there.
CGAffineTransform mapOf(const CGRect& bounds, CGPoint center, const CGAffineTransform& transform)
{
    if (transform.isIdentity())
        return CGAffineTransform::translation(center.x - bounds.midX(), center.y - bounds.midY());
    return CGAffineTransform::translation(-bounds.midX(), -bounds.midY())
        .concatenating(transform)
        .concatenating(CGAffineTransform::translation(center.x, center.y));
}

} // namespace

CGAffineTransform UIView::modelMapToSuperview() const
{
    return mapOf(bounds_, center_, transform_);
}

CGAffineTransform UIView::mapToSuperview() const
{
    if (!animations_)
        return mapOf(bounds_, center_, transform_);
    return mapOf(presentationBounds(), presentationCenter(), presentationTransform());
}

CGRect UIView::frame() const
{
    if (transform_.isIdentity())
        return CGRect::make(center_.x - bounds_.size.width / 2, center_.y - bounds_.size.height / 2,
                            bounds_.size.width, bounds_.size.height);
    return modelMapToSuperview().apply(bounds_);
}

void UIView::setFrame(CGRect frame)
{
    assertOnMainThread();
    requireFinite({frame.origin.x, frame.origin.y, frame.size.width, frame.size.height});
    auto size = CGSize{std::max(frame.size.width, 0.0), std::max(frame.size.height, 0.0)};
    if (!transform_.isIdentity()) {
        // The box around the transformed bounds shall be the frame. For turns by other than right angles there is no
        // one answer; the bounds then keep their shape, as far as the inverse map gives it.
        auto inverse = transform_.inverted();
        inverse.tx = inverse.ty = 0;
        size = inverse.apply(CGRect{{}, size}).size;
    }
    setBounds({bounds_.origin, size});
    setCenter({frame.midX(), frame.midY()});
}

void UIView::setBounds(CGRect bounds)
{
    assertOnMainThread();
    requireFinite({bounds.origin.x, bounds.origin.y, bounds.size.width, bounds.size.height});
    bounds.size = {std::max(bounds.size.width, 0.0), std::max(bounds.size.height, 0.0)};
    if (bounds == bounds_)
        return;
    markPlaceDirty();
    auto before = std::exchange(bounds_, bounds);
    ViewAnimator::valueChanged(*this, Property::bounds, numbers(before), numbers(bounds));
    visualFrameDidChange();
    markPlaceDirty();
    didChangeBounds(before);
}

void UIView::didChangeBounds(CGRect before)
{
    if (before.size != bounds_.size) {
        if (mask_ || !subviews_.empty())
            resizeSubviews(before.size);
        ViewLayout::safeAreaChanged(*this);
        // A subview's share of the right and lower edges depends on where they are.
        if (safeAreaInsets_ != UIEdgeInsets{}) {
            for (const auto& subview : std::vector(subviews_))
                subview->updateSafeArea();
        }
    }
    setNeedsLayout();
    if (superview_)
        updateSafeArea();
}

void UIView::setCenter(CGPoint center)
{
    assertOnMainThread();
    requireFinite({center.x, center.y});
    if (center == center_)
        return;
    markPlaceDirty();
    auto before = std::exchange(center_, center);
    ViewAnimator::valueChanged(*this, Property::center, numbers(before), numbers(center));
    visualFrameDidChange();
    markPlaceDirty();
    if (superview_)
        updateSafeArea();
}

void UIView::setTransform(CGAffineTransform transform)
{
    assertOnMainThread();
    requireFinite({transform.a, transform.b, transform.c, transform.d, transform.tx, transform.ty});
    if (transform == transform_)
        return;
    markPlaceDirty();
    auto before = std::exchange(transform_, transform);
    ViewAnimator::valueChanged(*this, Property::transform, numbers(before), numbers(transform));
    visualFrameDidChange();
    markPlaceDirty();
}

CGRect UIView::presentationBounds() const
{
    auto value = animations_ ? ViewAnimator::presented(*this, Property::bounds) : std::nullopt;
    if (!value)
        return bounds_;
    const auto& [x, y, width, height, unused, unused2] = value->components;
    // A spring that swings beyond nothing shows nothing.
    return CGRect::make(x, y, std::max(width, 0.0), std::max(height, 0.0));
}

CGPoint UIView::presentationCenter() const
{
    auto value = animations_ ? ViewAnimator::presented(*this, Property::center) : std::nullopt;
    return value ? CGPoint{value->components[0], value->components[1]} : center_;
}

CGAffineTransform UIView::presentationTransform() const
{
    auto value = animations_ ? ViewAnimator::presented(*this, Property::transform) : std::nullopt;
    if (!value)
        return transform_;
    const auto& c = value->components;
    return {c[0], c[1], c[2], c[3], c[4], c[5]};
}

CGRect UIView::presentationFrame() const
{
    return animations_ ? mapToSuperview().apply(presentationBounds()) : frame();
}

// The map from this view to the view at the top of its tree, which is the window if there is one.
CGAffineTransform UIView::modelMapToRoot(const UIView*& root) const
{
    CGAffineTransform map;
    auto* view = this;
    for (; view->superview_; view = view->superview_)
        map = map.concatenating(view->modelMapToSuperview());
    root = view;
    // A window's own place is the desktop's business; any other root counts with its place in a superview to come.
    return map;
}

CGPoint UIView::convertTo(CGPoint point, const UIView* target) const
{
    const UIView* root = nullptr;
    point = modelMapToRoot(root).apply(point);
    if (!target || target == root)
        return point;
    const UIView* targetRoot = nullptr;
    auto map = target->modelMapToRoot(targetRoot);
    precondition(targetRoot == root,
                 "coordinates were converted between views that have no common superview");
    return map.inverted().apply(point);
}

CGPoint UIView::convertFrom(CGPoint point, const UIView* source) const
{
    if (source)
        return source->convertTo(point, this);
    const UIView* root = nullptr;
    return modelMapToRoot(root).inverted().apply(point);
}

CGRect UIView::convertTo(CGRect rect, const UIView* target) const
{
    const UIView* root = nullptr;
    auto map = modelMapToRoot(root);
    if (target && target != root) {
        const UIView* targetRoot = nullptr;
        auto targetMap = target->modelMapToRoot(targetRoot);
        precondition(targetRoot == root,
                     "coordinates were converted between views that have no common superview");
        map = map.concatenating(targetMap.inverted());
    }
    return rect.isNull() ? rect : map.apply(rect);
}

CGRect UIView::convertFrom(CGRect rect, const UIView* source) const
{
    if (source)
        return source->convertTo(rect, this);
    const UIView* root = nullptr;
    auto map = modelMapToRoot(root).inverted();
    return rect.isNull() ? rect : map.apply(rect);
}

} // namespace platform
