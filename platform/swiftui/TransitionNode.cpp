// SPDX-License-Identifier: MIT
#include "platform/swiftui/TransitionNode.h"

#include "platform/swiftui/EnvironmentValues.h"
#include "platform/swiftui/ViewHost.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

CGAffineTransform transformOf(const AnyTransition::Effect& effect, CGSize size, LayoutDirection direction)
{
    CGPoint arm{(effect.anchor.x - 0.5) * size.width, (effect.anchor.y - 0.5) * size.height};
    auto offset = effect.offset;
    auto towardsReading = direction == LayoutDirection::rightToLeft ? -size.width : size.width;
    for (auto edge : effect.edges) {
        switch (edge) {
        case Edge::top:
            offset.dy -= size.height;
            break;
        case Edge::leading:
            offset.dx -= towardsReading;
            break;
        case Edge::bottom:
            offset.dy += size.height;
            break;
        case Edge::trailing:
            offset.dx += towardsReading;
            break;
        }
    }
    auto transform = CGAffineTransform::translation(-arm.x, -arm.y)
                         .concatenating(CGAffineTransform::scale(effect.scale.width, effect.scale.height))
                         .concatenating(CGAffineTransform::translation(arm.x + offset.dx, arm.y + offset.dy));
    bool isFinite = std::isfinite(transform.a) && std::isfinite(transform.d) && std::isfinite(transform.tx)
        && std::isfinite(transform.ty);
    return isFinite ? transform : CGAffineTransform{};
}

} // namespace

TransitionNode::TransitionNode(const NodeContext& context, AnyTransition transition)
    : GroupNode(context)
    , transition_(std::move(transition))
{
    if (auto* timing = UIView::currentAnimation(); timing && host().hasAppeared())
        arriving_ = *timing;
}

void TransitionNode::arrange(CGRect rect, const ProposedSize& proposal)
{
    GroupNode::arrange(rect, proposal);
    if (auto timing = std::exchange(arriving_, std::nullopt)) {
        UIView::performWithoutAnimation([&] { apply(transition_.insertion()); });
        UIView::animate(*timing, [&] { apply({}); });
    }
}

void TransitionNode::apply(const AnyTransition::Effect& effect)
{
    group().setAlpha(std::isnan(effect.opacity) ? 1 : std::clamp(effect.opacity, 0.0, 1.0));
    // Read once: a node that leaves follows nothing.
    group().setTransform(
        transformOf(effect, placedRect().size, context().environment->value<LayoutDirectionKey>(nullptr)));
}

void TransitionNode::leave(AnimationTiming timing, std::function<void()> completion)
{
    timing.repeatCount = 1;
    timing.autoreverses = false;
    group().setUserInteractionEnabled(false);
    group().accessibility().isHidden = true;
    container().addLeaving(sharedGroup());
    UIView::animate(
        timing, [this] { apply(transition_.removal()); },
        [this, isAlive = std::weak_ptr(alive_), completion = std::move(completion)](bool) {
            if (!isAlive.lock())
                return;
            container().removeLeaving(group());
            completion(); // deletes this
        });
}

} // namespace platform
