// SPDX-License-Identifier: MIT
// How a window hands out events: touches to what was hit, keys to the first responder, the pointer to what is below it.
#include "platform/uikit/UIWindow.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/AccessibilityEvents.h"
#include "platform/uikit/UIScrollView.h"
#include "platform/uikit/UIViewController.h"
#include "platform/uikit/UIWindowDispatch_p.h"
#include "platform/uikit/WindowBackend.h"

#include <algorithm>

namespace platform {

void UIWindow::sendTouch(UITouch& touch)
{
    assertOnMainThread();
    if (isClosed_)
        return;
    auto self = std::static_pointer_cast<UIWindow>(weak_from_this().lock());
    if (touch.phase == UITouchPhase::began) {
        touch.window = self;
        touch.view = hitTest(touch.windowLocation);
        touch.previousWindowLocation = touch.windowLocation;
    }
    dispatch_->arena.send(touch);
}

namespace {

bool typesText(const UIPress& press)
{
    constexpr auto commanding =
        UIKeyModifierFlags::control | UIKeyModifierFlags::alternate | UIKeyModifierFlags::command;
    if ((press.modifiers.rawValue & commanding) != 0 || press.characters.empty())
        return false;
    auto first = static_cast<unsigned char>(press.characters.front());
    return first >= 0x20 && first != 0x7f;
}

// Whether a key press would come from `responder` to `view`.
bool reaches(const std::shared_ptr<UIResponder>& responder, const UIView& view)
{
    for (auto step = responder; step; step = step->next()) {
        if (step.get() == &view)
            return true;
    }
    return false;
}

} // namespace

bool UIWindow::sendPress(const UIPress& press)
{
    assertOnMainThread();
    if (isClosed_)
        return false;
    auto keptAlive = weak_from_this().lock();
    auto responder = keyResponder();
    if (responder ? responder->pressesBegan(press) : pressesBegan(press))
        return true;
    if (isClosed_)
        return false;
    if (typesText(press)) {
        if (auto* input = activeTextInput()) {
            input->insertText(press.characters);
            return true;
        }
    }
    auto modal = modalView();
    if (modal ? modal->offerKeyEquivalent(press) : offerKeyEquivalent(press))
        return true;
    if (isClosed_)
        return false;
    // The handler may replace itself.
    if (auto handler = onUnhandledPress; handler && handler(press))
        return true;
    if (press.key != UIKeyCode::tab || isClosed_
        || (press.modifiers.rawValue & ~UIKeyModifierFlags::shift) != 0)
        return false;
    auto before = firstResponder();
    advanceFocus(press.modifiers.contains(UIKeyModifierFlags::shift) ? FocusDirection::backward
                                                                     : FocusDirection::forward);
    return firstResponder() != before;
}

void UIWindow::sendPressEnded(const UIPress& press)
{
    assertOnMainThread();
    if (isClosed_)
        return;
    auto keptAlive = weak_from_this().lock();
    auto responder = keyResponder();
    if (responder)
        responder->pressesEnded(press);
}

bool UIWindow::sendScroll(const UIScrollWheel& wheel)
{
    assertOnMainThread();
    if (isClosed_)
        return false;
    auto keptAlive = weak_from_this().lock();
    auto view = hitTest(wheel.windowLocation);
    auto wasTaken = view && view->scrollWheel(wheel);
    // Something else may be under the pointer now.
    if (wasTaken && !isClosed_ && dispatch_->pointer)
        sendHover(*dispatch_->pointer);
    return wasTaken;
}

void UIWindow::sendHover(CGPoint location)
{
    assertOnMainThread();
    if (isClosed_)
        return;
    auto keptAlive = weak_from_this().lock();
    dispatch_->pointer = location;
    auto view = hitTest(location);
    setHovered(view);
    dispatch_->arena.pointerMoved(location, view);
    if (!backend_)
        return;
    auto cursor = UIView::Cursor::arrow;
    for (auto* step = view.get(); step; step = step->superview_) {
        if (auto wanted = step->cursorAt(step->convertFrom(location, nullptr))) {
            cursor = *wanted;
            break;
        }
    }
    backend_->setPointer(cursor);
}

void UIWindow::sendHoverExit()
{
    assertOnMainThread();
    auto keptAlive = weak_from_this().lock();
    dispatch_->pointer.reset();
    setHovered(nullptr);
    dispatch_->arena.pointerLeft();
}

void UIWindow::setHovered(const std::shared_ptr<UIView>& view)
{
    auto former = std::exchange(dispatch_->hovered, {});
    std::vector<std::shared_ptr<UIView>> entered;
    for (auto step = view; step; step = step->superview()) {
        dispatch_->hovered.push_back(step);
        auto wasThere = std::ranges::any_of(former, [&](const auto& other) { return other.lock() == step; });
        if (!wasThere)
            entered.push_back(step);
    }
    for (const auto& weak : former) {
        auto left = weak.lock();
        if (left && !(view && view->isDescendant(*left)))
            left->pointerExited();
    }
    for (auto step = entered.rbegin(); step != entered.rend(); ++step)
        (*step)->pointerEntered();
}

UITextInput* UIWindow::activeTextInput() const
{
    auto responder = firstResponder();
    return responder ? responder->textInput() : nullptr;
}

bool UIWindow::makeFirstResponder(std::shared_ptr<UIResponder> responder)
{
    assertOnMainThread();
    if (responder)
        return responder->becomeFirstResponder();
    auto present = firstResponder();
    return !present || present->resignFirstResponder();
}

void UIWindow::firstResponderDidChange()
{
    auto responder = firstResponder();
    if (auto* view = dynamic_cast<UIView*>(responder.get()))
        notifyAccessibility(*view, AccessibilityEvent::focused);
    if (backend_)
        backend_->textInputDidChange();
}

// A view and what it holds is about to go: the keyboard and the pointer are not there any more.
void UIWindow::viewWillLeave(UIView& view)
{
    endModalsBelow(view);
    auto responder = firstResponder();
    if (responder && reaches(responder, view)) {
        responder->resignFirstResponder();
        // It is not asked whether it wants to.
        if (firstResponder() == responder) {
            firstResponder_.reset();
            firstResponderDidChange();
        }
    }
    auto isBelow = [&](const std::weak_ptr<UIView>& hovered) {
        auto other = hovered.lock();
        return other && other->isDescendant(view);
    };
    if (std::ranges::any_of(dispatch_->hovered, isBelow))
        setHovered(view.superview());
}

namespace {

// What takes the keyboard at one place, in order: a view, or all that a scroll view holds, which is gone through before
// what stands beside it.
struct FocusStop {
    CGRect place; // in the window
    std::vector<std::shared_ptr<UIView>> views;
};

void collectFocusable(UIView& view, bool isRightToLeft, std::vector<FocusStop>& stops);

std::vector<std::shared_ptr<UIView>> inReadingOrder(std::vector<FocusStop> stops, bool isRightToLeft)
{
    std::ranges::stable_sort(stops, {}, [&](const FocusStop& stop) {
        return std::pair(stop.place.minY(), isRightToLeft ? -stop.place.maxX() : stop.place.minX());
    });
    std::vector<std::shared_ptr<UIView>> order;
    for (auto& stop : stops)
        order.insert(order.end(), stop.views.begin(), stop.views.end());
    return order;
}

void collectFocusable(UIView& view, bool isRightToLeft, std::vector<FocusStop>& stops)
{
    if (view.isHidden() || view.alpha() == 0 || !view.isUserInteractionEnabled())
        return;
    auto place = view.convertTo(view.bounds(), nullptr);
    if (view.canBecomeFirstResponder())
        stops.push_back({place, {std::static_pointer_cast<UIView>(view.shared_from_this())}});
    std::vector<FocusStop> inside;
    auto isScrollView = dynamic_cast<UIScrollView*>(&view) != nullptr;
    for (const auto& subview : view.subviews())
        collectFocusable(*subview, isRightToLeft, isScrollView ? inside : stops);
    if (auto order = inReadingOrder(std::move(inside), isRightToLeft); !order.empty())
        stops.push_back({place, std::move(order)});
}

// The innermost scroll view first: where the view stands in those around it follows from that.
void scrollIntoSight(const UIView& view)
{
    constexpr CGFloat margin = 12; // points around it
    std::vector<std::shared_ptr<UIScrollView>> scrollViews;
    for (auto above = view.superview(); above; above = above->superview()) {
        if (auto scrollView = std::dynamic_pointer_cast<UIScrollView>(above))
            scrollViews.push_back(std::move(scrollView));
    }
    for (const auto& scrollView : scrollViews) {
        if (!view.isDescendant(*scrollView))
            return; // a delegate has taken it away
        auto place = view.convertTo(view.bounds(), scrollView.get());
        auto seen = scrollView->bounds().inset(scrollView->adjustedContentInset());
        if (!seen.contains(place))
            scrollView->scrollRectToVisible(place.insetBy(-margin, -margin));
    }
}

} // namespace

void UIWindow::advanceFocus(FocusDirection direction)
{
    assertOnMainThread();
    bool backwards = direction == FocusDirection::backward;
    auto keptAlive = weak_from_this().lock();
    auto isRightToLeft =
        effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    std::vector<FocusStop> stops;
    if (auto modal = modalView()) {
        collectFocusable(*modal, isRightToLeft, stops);
    } else {
        for (const auto& subview : subviews())
            collectFocusable(*subview, isRightToLeft, stops);
    }
    auto order = inReadingOrder(std::move(stops), isRightToLeft);
    if (order.empty())
        return;
    auto count = static_cast<std::ptrdiff_t>(order.size());
    auto present = std::ranges::find_if(order, [&](const auto& view) { return view->isFirstResponder(); });
    auto start = present != order.end() ? present - order.begin() : backwards ? count : -1;
    for (std::ptrdiff_t step = 1; step <= count; ++step) {
        auto index = ((start + (backwards ? -step : step)) % count + count) % count;
        auto& view = order[static_cast<std::size_t>(index)];
        if (view->becomeFirstResponder())
            return scrollIntoSight(*view);
    }
}

} // namespace platform
