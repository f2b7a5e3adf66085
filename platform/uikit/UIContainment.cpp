// SPDX-License-Identifier: MIT
#include "platform/uikit/UIContainment_p.h"

#include "platform/foundation/Precondition.h"
#include "platform/uikit/UIView.h"

#include <algorithm>

namespace platform::containment {

namespace {

bool contains(std::span<const std::shared_ptr<UIViewController>> controllers,
              const std::shared_ptr<UIViewController>& controller)
{
    return std::ranges::find(controllers, controller) != controllers.end();
}

void removeView(UIViewController& controller)
{
    if (auto view = controller.viewIfLoaded())
        view->removeFromSuperview();
}

} // namespace

void replace(UIViewController& container, Controllers& present, Controllers wanted)
{
    for (auto at = wanted.begin(); at != wanted.end(); ++at) {
        precondition(*at != nullptr, "a contained controller is null");
        precondition(std::find(wanted.begin(), at, *at) == at, "a controller is contained twice");
    }
    const Controllers before = std::exchange(present, std::move(wanted));
    // The callbacks below may change `present` again: go by what this call was given.
    const Controllers after = present;
    for (const auto& controller : before) {
        // One that another container took over is no longer this one's to send off.
        if (contains(after, controller) || controller->parent().get() != &container)
            continue;
        controller->willMove(nullptr);
        removeView(*controller);
        controller->removeFromParent();
    }
    for (const auto& controller : after) {
        if (contains(before, controller))
            continue;
        container.addChild(controller);
        controller->didMove(&container);
    }
}

void show(UIViewController& container, const Controllers& contained,
          std::span<const std::shared_ptr<UIViewController>> shown)
{
    const auto view = container.viewIfLoaded();
    if (!view)
        return;
    for (const auto& controller : contained) {
        const auto hidden = contains(shown, controller) ? nullptr : controller->viewIfLoaded();
        if (hidden && hidden->superview() == view)
            hidden->removeFromSuperview();
    }
    for (const auto& controller : shown) {
        if (controller->view()->superview() != view)
            view->addSubview(controller->view());
    }
}

void showFilling(UIViewController& container, const Controllers& contained,
                 const std::shared_ptr<UIViewController>& shown)
{
    const auto view = container.viewIfLoaded();
    if (!view)
        return;
    if (shown) {
        shown->view()->setFrame(view->bounds());
        shown->view()->setAutoresizingMask(
            {UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight});
    }
    show(container, contained, {&shown, shown ? 1u : 0u});
}

} // namespace platform::containment
