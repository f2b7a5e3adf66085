// SPDX-License-Identifier: MIT
// The tree: adding, removing and ordering subviews. What a view is told on the way may change the tree again; each
// step therefore looks at how things stand then.
#include "platform/uikit/UIView.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Precondition.h"
#include "platform/uikit/AccessibilityBridge.h"
#include "platform/uikit/SubviewBounds.h"
#include "platform/uikit/UIGestureRecognizer.h"
#include "platform/uikit/UIViewController.h"
#include "platform/uikit/UIWindow.h"
#include "platform/uikit/ViewLayout.h"

#include <algorithm>
#include <map>
#include <ranges>
#include <unordered_map>

namespace platform {

namespace {

// Those of a view that has inherited none yet; one for all.
const std::shared_ptr<const UITraitCollection>& initialTraits()
{
    static const auto traits = std::make_shared<const UITraitCollection>();
    return traits;
}

} // namespace

UIView::UIView()
    : traits_(initialTraits())
{
    assertOnMainThread();
}

UIView::UIView(CGRect frame)
    : UIView()
{
    setFrame(frame);
}

UIView::~UIView()
{
    AccessibilityBridge::forget(*this);
    for (const auto& subview : subviews_) {
        subview->superview_ = nullptr;
        subview->setWindow(nullptr);
    }
    if (mask_)
        mask_->superview_ = nullptr;
    for (const auto& recognizer : gestureRecognizers_)
        recognizer->view_ = nullptr;
}

std::shared_ptr<UIView> UIView::superview() const
{
    return superview_ ? std::static_pointer_cast<UIView>(superview_->weak_from_this().lock()) : nullptr;
}

std::shared_ptr<UIWindow> UIView::window() const
{
    return window_ ? std::static_pointer_cast<UIWindow>(window_->weak_from_this().lock()) : nullptr;
}

std::shared_ptr<UIViewController> UIView::viewController() const
{
    return viewController_.lock();
}

std::shared_ptr<UIWindow> UIView::responderWindow() const
{
    return window();
}

bool UIView::isDescendant(const UIView& ancestor) const
{
    for (auto* view = this; view; view = view->superview_) {
        if (view == &ancestor)
            return true;
    }
    return false;
}

void UIView::addSubview(std::shared_ptr<UIView> view)
{
    adopt(std::move(view), std::numeric_limits<std::size_t>::max());
}

void UIView::insertSubview(std::shared_ptr<UIView> view, std::size_t index)
{
    adopt(std::move(view), index);
}

namespace {

std::size_t indexOf(const std::vector<std::shared_ptr<UIView>>& views, const UIView& view)
{
    auto found = std::ranges::find(views, &view, &std::shared_ptr<UIView>::get);
    precondition(found != views.end(), "the view named as a sibling is none of the subviews");
    return static_cast<std::size_t>(found - views.begin());
}

} // namespace

void UIView::insertSubviewAbove(std::shared_ptr<UIView> view, const UIView& sibling)
{
    if (view.get() == &sibling)
        return;
    auto index = indexOf(subviews_, sibling) + 1;
    // A view that stands below leaves its place, which moves the sibling down.
    if (view && view->superview_ == this && indexOf(subviews_, *view) < index)
        --index;
    adopt(std::move(view), index);
}

void UIView::insertSubviewBelow(std::shared_ptr<UIView> view, const UIView& sibling)
{
    if (view.get() == &sibling)
        return;
    auto index = indexOf(subviews_, sibling);
    if (view && view->superview_ == this && indexOf(subviews_, *view) < index)
        --index;
    adopt(std::move(view), index);
}

void UIView::bringSubviewToFront(const UIView& view)
{
    adopt(subviews_[indexOf(subviews_, view)], std::numeric_limits<std::size_t>::max());
}

void UIView::sendSubviewToBack(const UIView& view)
{
    adopt(subviews_[indexOf(subviews_, view)], 0);
}

void UIView::adopt(std::shared_ptr<UIView> view, std::size_t index)
{
    assertOnMainThread();
    precondition(view != nullptr, "a null view was added");
    precondition(!isDescendant(*view), "a view was added to itself or to a view inside of it");
    precondition(view->window_ != view.get(), "a window was added to a view");

    if (view->superview_ == this && mask_ != view) {
        auto from = subviews_.begin() + static_cast<std::ptrdiff_t>(indexOf(subviews_, *view));
        auto to = subviews_.begin() + static_cast<std::ptrdiff_t>(std::min(index, subviews_.size() - 1));
        if (from == to)
            return;
        if (from < to)
            std::rotate(from, from + 1, to + 1);
        else
            std::rotate(to, from, from + 1);
        subviewOrderDidChange();
        view->markPlaceDirty();
        return;
    }

    auto keptAlive = weak_from_this().lock();
    auto formerTint = view->tintColor();
    view->willMoveToSuperview(this);
    view->leaveWindowFor(window_);
    precondition(!isDescendant(*view), "a view was added to a view inside of it while it was on its way");
    if (view->superview_)
        view->superview_->release(*view);

    index = std::min(index, subviews_.size());
    subviews_.insert(subviews_.begin() + static_cast<std::ptrdiff_t>(index), view);
    view->superview_ = this;
    subviewOrderDidChange();
    view->setWindow(window_);
    if (view->wantsLayout())
        view->markSuperviewsForLayout();
    view->markPlaceDirty();
    view->updateSafeArea();

    view->finishMove(formerTint);
    view->didMoveToSuperview();
    if (view->superview_ == this)
        didAddSubview(*view);
}

// After the tree is as it shall be: what the view has inherited, and the did-calls.
void UIView::finishMove(const UIColor& formerTint)
{
    inheritTraits();
    if (!tintColor_ && tintColor() != formerTint)
        tellTintColorChanged();
    if (toldWindow_ != window_)
        tellDidMoveToWindow();
}

// Takes a subview, or the mask, out without the calls that the view itself gets.
void UIView::release(UIView& subview)
{
    auto keptAlive = subview.weak_from_this().lock();
    willRemoveSubview(subview);
    if (subview.superview_ != this)
        return;
    ViewLayout::willLeaveSuperview(subview);
    subview.markPlaceDirty();
    if (mask_.get() == &subview) {
        mask_.reset();
        markPlaceDirty(); // what it cut away
    } else
        std::erase_if(subviews_, [&](const auto& view) { return view.get() == &subview; });
    subview.superview_ = nullptr;
    subviewOrderDidChange();
}

void UIView::removeFromSuperview()
{
    assertOnMainThread();
    if (!superview_)
        return;
    auto self = weak_from_this().lock();
    auto formerTint = tintColor();
    willMoveToSuperview(nullptr);
    leaveWindowFor(nullptr);
    if (!superview_)
        return; // one of the two has done it
    superview_->release(*this);
    if (superview_)
        return;
    setWindow(nullptr);
    finishMove(formerTint);
    didMoveToSuperview();
}

namespace {

// Which of the numbers form a longest ascending subsequence: those may stay when the others are moved to put all
// in order.
std::vector<bool> longestAscending(const std::vector<std::size_t>& numbers)
{
    std::vector<std::size_t> ends; // index of the smallest end of a sequence of each length
    std::vector<std::size_t> before(numbers.size());
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        auto place = std::ranges::lower_bound(ends, numbers[i], {}, [&](auto end) { return numbers[end]; });
        before[i] = place == ends.begin() ? i : *(place - 1);
        if (place == ends.end())
            ends.push_back(i);
        else
            *place = i;
    }
    std::vector<bool> stays(numbers.size());
    if (!ends.empty()) {
        auto i = ends.back();
        for (stays[i] = true; before[i] != i; stays[i] = true)
            i = before[i];
    }
    return stays;
}

} // namespace

void UIView::setSubviews(const std::vector<std::shared_ptr<UIView>>& views)
{
    assertOnMainThread();
    if (views == subviews_)
        return;
    auto keptAlive = weak_from_this().lock();
    std::unordered_map<const UIView*, std::size_t> wanted;
    for (const auto& view : views)
        precondition(view && wanted.emplace(view.get(), wanted.size()).second,
                     "the views given as subviews hold a null or the same view twice");
    auto before = subviews_;
    for (const auto& view : before) {
        if (!wanted.contains(view.get()) && view->superview_ == this)
            view->removeFromSuperview();
    }

    // What is here already gets its order without a word; what somebody added meanwhile comes last.
    std::vector<std::size_t> places;
    for (const auto& view : subviews_) {
        auto found = wanted.find(view.get());
        places.push_back(found == wanted.end() ? wanted.size() + places.size() : found->second);
    }
    auto stays = longestAscending(places);
    std::map<std::size_t, std::shared_ptr<UIView>> ordered;
    for (std::size_t i = 0; i < subviews_.size(); ++i) {
        if (!stays[i])
            subviews_[i]->markPlaceDirty();
        ordered.emplace(places[i], subviews_[i]);
    }
    std::ranges::copy(std::views::values(ordered), subviews_.begin());
    subviewOrderDidChange();

    for (std::size_t i = 0; i < views.size(); ++i) {
        if (views[i]->superview_ != this)
            insertSubview(views[i], i);
    }
}

AccessibilityProperties& UIView::accessibility()
{
    if (!accessibility_)
        accessibility_ = std::make_unique<AccessibilityProperties>();
    return *accessibility_;
}

const AccessibilityProperties& UIView::accessibility() const
{
    static const AccessibilityProperties nothing;
    return accessibility_ ? *accessibility_ : nothing;
}

std::shared_ptr<UIResponder> UIView::next() const
{
    if (auto controller = viewController_.lock())
        return controller;
    return superview();
}

} // namespace platform
