// SPDX-License-Identifier: MIT
// Layout in two steps: marking, and a pass over what is marked. Autoresizing and the safe area.
#include "platform/uikit/UIView.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Logger.h"
#include "platform/foundation/Precondition.h"
#include "platform/graphics/CurrentAppearance.h"
#include "platform/uikit/UIViewController.h"
#include "platform/uikit/UIWindow.h"
#include "platform/uikit/ViewLayout.h"

#include <algorithm>

namespace platform {

namespace {

// Views that mark each other for ever would hold the thread. Real trees come to rest in two or three rounds.
constexpr int maximumRounds = 32;

} // namespace

void UIView::setNeedsLayout()
{
    assertOnMainThread();
    if (needsLayout_)
        return;
    needsLayout_ = true;
    markSuperviewsForLayout();
}

// A view that wants layout has all its superviews marked, so a pass finds it without a search.
void UIView::markSuperviewsForLayout()
{
    auto* view = superview_;
    while (view && !view->subtreeNeedsLayout_) {
        view->subtreeNeedsLayout_ = true;
        view = view->superview_;
    }
    if (window_)
        window_->requestFrame();
}

void UIView::layoutIfNeeded()
{
    assertOnMainThread();
    precondition(!window_ || window_->phase_ != UIWindow::Phase::paint, "layout asked during paint");
    // A superview that is to lay out decides this view's size, and so goes first.
    auto* top = this;
    for (auto* view = superview_; view; view = view->superview_) {
        if (view->needsLayout_)
            top = view;
    }
    auto keptAlive = top->weak_from_this().lock();
    for (int round = 0; top->wantsLayout(); ++round) {
        if (round == maximumRounds) {
            Logger("org.zelk.uikit", "layout")
                .error("layout does not come to rest: views ask for it again each time they are laid out");
            return;
        }
        top->layoutSubtree();
    }
}

void UIView::layoutSubtree()
{
    auto keptAlive = weak_from_this().lock();
    if (needsLayout_) {
        needsLayout_ = false;
        CurrentAppearance current(traits_->colorAppearance());
        auto controller = viewController_.lock();
        if (controller)
            controller->viewWillLayoutSubviews();
        layoutSubviews();
        if (controller)
            controller->viewDidLayoutSubviews();
    }
    subtreeNeedsLayout_ = false;
    if (mask_ && mask_->wantsLayout())
        mask_->layoutSubtree();
    auto subviews = subviews_;
    for (const auto& subview : subviews) {
        if (subview->superview_ == this && subview->wantsLayout())
            subview->layoutSubtree();
    }
}

void UIView::layoutSubviews()
{
    ViewLayout::solve(*this);
}

CGSize UIView::sizeThatFits(CGSize) const
{
    return bounds_.size;
}

void UIView::sizeToFit()
{
    auto size = sizeThatFits(bounds_.size);
    auto origin = frame().origin;
    setBounds({bounds_.origin, size});
    if (transform_.isIdentity())
        setCenter({origin.x + size.width / 2, origin.y + size.height / 2});
}

void UIView::invalidateIntrinsicContentSize()
{
    assertOnMainThread();
    ViewLayout::intrinsicContentSizeChanged(*this);
}

void UIView::setAutoresizingMask(UIViewAutoresizing mask)
{
    assertOnMainThread();
    autoresizingMask_ = mask;
}

void UIView::setTranslatesAutoresizingMaskIntoConstraints(bool translates)
{
    assertOnMainThread();
    if (translates == translatesAutoresizingMask_)
        return;
    translatesAutoresizingMask_ = translates;
    if (superview_)
        superview_->setNeedsLayout();
}

namespace {

struct Span {
    CGFloat start, length;
};

// Shares the superview's growth among the flexible parts of one axis, in proportion to what they have.
Span resized(Span span, CGFloat before, CGFloat now, bool startFlexes, bool lengthFlexes, bool endFlexes)
{
    auto growth = now - before;
    CGFloat parts[] = {startFlexes ? std::max(span.start, 0.0) : 0, lengthFlexes ? span.length : 0,
                       endFlexes ? std::max(before - span.start - span.length, 0.0) : 0};
    auto sum = parts[0] + parts[1] + parts[2];
    auto count = int(startFlexes) + int(lengthFlexes) + int(endFlexes);
    if (count == 0)
        return span;
    auto share = [&](bool flexes, CGFloat part) {
        return !flexes ? 0 : sum > 0 ? growth * part / sum : growth / count;
    };
    return {span.start + share(startFlexes, parts[0]),
            std::max(span.length + share(lengthFlexes, parts[1]), 0.0)};
}

} // namespace

void UIView::resizeSubviews(CGSize before)
{
    using Flexible = UIViewAutoresizing;
    for (const auto& subview : std::vector(subviews_)) {
        auto flexible = subview->autoresizingMask_;
        if (flexible.rawValue == 0 || !subview->translatesAutoresizingMask_)
            continue;
        auto size = subview->bounds_.size;
        auto has = [&](unsigned flag) { return flexible.contains(flag); };
        auto [x, width] = resized({subview->center_.x - size.width / 2, size.width}, before.width,
                                  bounds_.size.width, has(Flexible::flexibleLeftMargin),
                                  has(Flexible::flexibleWidth), has(Flexible::flexibleRightMargin));
        auto [y, height] = resized({subview->center_.y - size.height / 2, size.height}, before.height,
                                   bounds_.size.height, has(Flexible::flexibleTopMargin),
                                   has(Flexible::flexibleHeight), has(Flexible::flexibleBottomMargin));
        subview->setBounds({subview->bounds_.origin, {width, height}});
        subview->setCenter({x + width / 2, y + height / 2});
    }
}

void UIView::updateSafeArea()
{
    UIEdgeInsets insets;
    if (window_ == this) {
        insets = window_->baseSafeAreaInsets_;
    } else if (superview_ && superview_->safeAreaInsets_ != UIEdgeInsets{}) {
        // What the superview's edges still cover here.
        auto outer = superview_->safeAreaInsets_;
        auto space = superview_->bounds_;
        auto box = frame();
        insets = {std::max(outer.top - (box.minY() - space.minY()), 0.0),
                  std::max(outer.left - (box.minX() - space.minX()), 0.0),
                  std::max(outer.bottom - (space.maxY() - box.maxY()), 0.0),
                  std::max(outer.right - (space.maxX() - box.maxX()), 0.0)};
    }
    auto controller = viewController_.lock();
    if (controller) {
        auto more = controller->additionalSafeAreaInsets();
        insets = {insets.top + more.top, insets.left + more.left, insets.bottom + more.bottom,
                  insets.right + more.right};
    }
    if (insets == safeAreaInsets_)
        return;
    auto keptAlive = weak_from_this().lock();
    safeAreaInsets_ = insets;
    setNeedsLayout();
    ViewLayout::safeAreaChanged(*this);
    safeAreaInsetsDidChange();
    if (controller)
        controller->viewSafeAreaInsetsDidChange();
    for (const auto& subview : std::vector(subviews_))
        subview->updateSafeArea();
}

} // namespace platform
