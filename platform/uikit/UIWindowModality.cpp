// SPDX-License-Identifier: MIT
// What a window keeps to one of its views while that is modal.
#include "platform/uikit/UIWindow.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Precondition.h"
#include "platform/uikit/AccessibilityEvents.h"
#include "platform/uikit/UIViewController.h"
#include "platform/uikit/UIWindowDispatch_p.h"

#include <algorithm>

namespace platform {

void UIWindow::beginModal(const std::shared_ptr<UIView>& view)
{
    assertOnMainThread();
    precondition(view && view->window().get() == this, "a view outside of the window was made modal in it");
    auto keptAlive = weak_from_this().lock();
    std::erase_if(dispatch_->modals, [](const auto& modal) { return modal.view.expired(); });
    auto former = firstResponder();
    dispatch_->modals.push_back({view, former});
    if (former && keepsKeyboardFrom(*former)) {
        former->resignFirstResponder();
        // It is not asked whether it wants to.
        if (firstResponder() == former) {
            firstResponder_.reset();
            firstResponderDidChange();
        }
    }
    notifyAccessibility(*this, AccessibilityEvent::childrenChanged);
    if (!isClosed_ && dispatch_->pointer)
        sendHover(*dispatch_->pointer);
}

void UIWindow::endModal(const UIView& view)
{
    assertOnMainThread();
    auto& modals = dispatch_->modals;
    auto found =
        std::ranges::find_if(modals, [&](const auto& modal) { return modal.view.lock().get() == &view; });
    if (found == modals.end())
        return;
    auto keptAlive = weak_from_this().lock();
    auto former = found->formerResponder;
    auto above = modals.erase(found);
    if (above != modals.end()) {
        above->formerResponder = former;
        return;
    }
    auto present = std::dynamic_pointer_cast<UIView>(firstResponder());
    if (auto responder = former.lock(); responder && (!firstResponder() || present))
        responder->becomeFirstResponder();
    if (present && present->isDescendant(view) && firstResponder() == present)
        present->resignFirstResponder();
    notifyAccessibility(*this, AccessibilityEvent::childrenChanged);
    if (!isClosed_ && dispatch_->pointer)
        sendHover(*dispatch_->pointer);
}

std::shared_ptr<UIView> UIWindow::modalView() const
{
    for (auto modal = dispatch_->modals.rbegin(); modal != dispatch_->modals.rend(); ++modal) {
        if (auto view = modal->view.lock(); view && view->window().get() == this)
            return view;
    }
    return nullptr;
}

bool UIWindow::offerShortcut(UIView& view, const UIPress& press)
{
    assertOnMainThread();
    return view.offerKeyEquivalent(press);
}

void UIWindow::endModalsBelow(const UIView& view)
{
    for (const auto& modal : std::vector(dispatch_->modals)) {
        if (auto inside = modal.view.lock(); inside && inside->isDescendant(view))
            endModal(*inside);
    }
}

bool UIWindow::keepsKeyboardFrom(UIResponder& responder) const
{
    auto modal = modalView();
    if (!modal)
        return false;
    if (auto* controller = dynamic_cast<UIViewController*>(&responder))
        return !controller->isViewLoaded() || !controller->view()->isDescendant(*modal);
    for (auto step = std::static_pointer_cast<UIResponder>(responder.shared_from_this()); step;
         step = step->next()) {
        if (step == modal)
            return false;
    }
    return true;
}

std::shared_ptr<UIResponder> UIWindow::keyResponder() const
{
    if (auto responder = firstResponder())
        return responder;
    if (auto modal = modalView())
        return modal;
    return rootViewController_ ? rootViewController_->viewIfLoaded() : nullptr;
}

} // namespace platform
