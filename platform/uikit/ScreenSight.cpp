// SPDX-License-Identifier: MIT
#include "platform/uikit/ScreenSight.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/UIView.h"
#include "platform/uikit/UIWindow.h"
#include "platform/uikit/shadowBounds.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <utility>

namespace platform {

namespace {

struct Waiting {
    std::map<std::uint64_t, std::function<void()>> callbacks;
    std::uint64_t next = 0;
};

Waiting& waiting()
{
    static auto& all = *new Waiting; // tokens may outlive everything
    return all;
}

CGAffineTransform mapOnScreen(const UIView& view)
{
    auto bounds = view.presentationBounds();
    auto center = view.presentationCenter();
    return CGAffineTransform::translation(-bounds.midX(), -bounds.midY())
        .concatenating(view.presentationTransform())
        .concatenating(CGAffineTransform::translation(center.x, center.y));
}

// Whether its background alone hides everything behind it in the rectangle; not while it moves.
bool hides(const UIView& view, CGRect rect)
{
    if (view.isHidden() || view.isAnimating() || view.mask() || view.alpha() < 1 || view.cornerRadius() > 0
        || !view.transform().isIdentity() || !view.backgroundColor())
        return false;
    auto components = view.backgroundColor()->components(view.traitCollection().colorAppearance());
    return components.alpha >= 1 && view.frame().contains(rect);
}

bool isHiddenBySibling(const UIView& superview, const UIView& view, CGRect rect)
{
    const auto& siblings = superview.subviews();
    auto place = std::ranges::find(siblings, &view, &std::shared_ptr<UIView>::get);
    return place != siblings.end() && std::any_of(place + 1, siblings.end(), [&](const auto& sibling) {
               return sibling->zPosition() >= view.zPosition() && hides(*sibling, rect);
           });
}

} // namespace

CGRect placeOnScreen(const UIView& view)
{
    auto all = view.presentationBounds();
    if (!view.clipsToBounds()) {
        for (const auto& subview : view.subviews()) {
            if (!subview->isHidden())
                all = all.unionWith(placeOnScreen(*subview));
        }
    }
    return mapOnScreen(view).apply(view.shadow() ? withShadow(all, *view.shadow()) : all);
}

CGRect rectOnScreen(const UIView& view, CGRect rect)
{
    rect = view.superview() ? mapOnScreen(view).apply(rect) : rect;
    for (auto above = view.superview(); above && above->superview(); above = above->superview())
        rect = mapOnScreen(*above).apply(rect);
    return rect;
}

bool isInSight(const UIView& view, CGRect place)
{
    auto window = view.window();
    if (!window || !window->isOnScreen() || view.isHidden())
        return false;
    auto* inner = &view;
    for (auto above = view.superview(); above; above = above->superview()) {
        if (above->isHidden() || (above->presentationAlpha() == 0 && !above->isAnimating()))
            return false;
        if (above->clipsToBounds() || above == window)
            place = place.intersection(above->presentationBounds());
        if (place.isEmpty() || isHiddenBySibling(*above, *inner, place))
            return false;
        place = mapOnScreen(*above).apply(place);
        inner = above.get();
    }
    return true;
}

Token whenScreenChanges(std::function<void()> callback)
{
    assertOnMainThread();
    auto number = waiting().next++;
    waiting().callbacks.emplace(number, std::move(callback));
    return Token([number] { waiting().callbacks.erase(number); });
}

void screenDidChange()
{
    auto& [callbacks, next] = waiting();
    if (callbacks.empty()) [[likely]]
        return;
    // Those that begin to wait on the way wait for the next change.
    for (auto end = next; !callbacks.empty() && callbacks.begin()->first < end;)
        callbacks.extract(callbacks.begin()).mapped()();
}

} // namespace platform
