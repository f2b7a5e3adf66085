// SPDX-License-Identifier: MIT
#include "platform/swiftui/effects.h"

#include "platform/graphics/CGContext.h"
#include "platform/uikit/OutlineMask.h"
#include "platform/uikit/ScreenSight.h"

#include <algorithm>
#include <cmath>

namespace platform {

OpacityModifier::Node::Node(const NodeContext& context, const OpacityModifier& modifier)
    : GroupNode(context)
{
    updateModifier(modifier);
}

void OpacityModifier::Node::updateModifier(const OpacityModifier& modifier)
{
    group().setAlpha(std::isnan(modifier.opacity) ? 1 : std::clamp(modifier.opacity, 0.0, 1.0));
}

ClippedModifier::Node::Node(const NodeContext& context, const ClippedModifier& modifier)
    : GroupNode(context)
{
    group().setClipsToBounds(true);
    updateModifier(modifier);
}

void ClippedModifier::Node::updateModifier(const ClippedModifier& modifier)
{
    constexpr CGFloat roundest = 1e6; // more than half of any side
    group().setCornerRadius(std::min(usableLength(modifier.cornerRadius), roundest));
}

// --- Shapes ----------------------------------------------------------------------------------------

class ClipShapeNode::MaskView : public UIView, public OutlineMask {
public:
    void setOutline(Outline outline)
    {
        outline_ = std::move(outline);
        setNeedsDisplay();
    }
    UIBezierPath outlineNow() const override { return outline_(bounds()); }
    void draw(CGContext& context, CGRect) override { context.fill(outlineNow(), UIColor::black()); }
    bool pointInside(CGPoint point) const override { return outlineNow().contains(point); }

private:
    Outline outline_;
};

ClipShapeNode::ClipShapeNode(const NodeContext& context)
    : GroupNode(context)
    , mask_(std::make_shared<MaskView>())
{
    group().setMask(mask_);
}

void ClipShapeNode::setOutline(Outline outline)
{
    mask_->setOutline(std::move(outline));
    group().setNeedsDisplay();
}

void ClipShapeNode::arrange(CGRect rect, const ProposedSize& proposal)
{
    bool isFirst = !isPlaced();
    GroupNode::arrange(rect, proposal);
    auto resize = [&] { mask_->setFrame({{}, rect.size}); };
    if (isFirst)
        UIView::performWithoutAnimation(resize);
    else
        resize();
}

// --- Shadow ----------------------------------------------------------------------------------------

ShadowModifier::Node::Node(const NodeContext& context, const ShadowModifier& modifier)
    : GroupNode(context)
    , shadow_(modifier.shadow)
    , numbers_(
          {shadow_.radius, shadow_.offset.width, shadow_.offset.height}, [this] { show(); },
          [this] { return isInSight(group()); })
{
    show();
}

void ShadowModifier::Node::updateModifier(const ShadowModifier& modifier)
{
    shadow_ = modifier.shadow;
    numbers_.set({shadow_.radius, shadow_.offset.width, shadow_.offset.height});
    show();
}

void ShadowModifier::Node::show()
{
    auto& numbers = numbers_.presentation();
    auto now = shadow_;
    now.radius = numbers[0];
    now.offset = {numbers[1], numbers[2]};
    group().setShadow(now);
}

// --- Transforms ------------------------------------------------------------------------------------

TransformNode::TransformNode(const NodeContext& context, std::vector<double> numbers, UnitPoint anchor)
    : GroupNode(context)
    , anchor_(anchor)
    , numbers_(std::move(numbers), [this] { applyTransform(); }, [this] { return isSeen(); })
{
}

void TransformNode::setNumbers(std::vector<double> numbers, UnitPoint anchor)
{
    anchor_ = anchor;
    numbers_.set(std::move(numbers));
    applyTransform();
}

void TransformNode::arrange(CGRect rect, const ProposedSize& proposal)
{
    GroupNode::arrange(rect, proposal);
    applyTransform();
}

CGPoint TransformNode::arm() const
{
    auto size = placedRect().size;
    return {(anchor_.x - 0.5) * size.width, (anchor_.y - 0.5) * size.height};
}

// Anywhere on its way, however it turns and as large as it gets.
bool TransformNode::isSeen() const
{
    auto size = placedRect().size;
    auto arm = this->arm();
    auto radius = std::hypot(size.width, size.height) / 2 + std::hypot(arm.x, arm.y);
    double growth = 1;
    for (auto* numbers : {&numbers_.start(), &numbers_.values()}) {
        auto map = transformOf(*numbers);
        growth = std::max(growth, std::hypot(map.a, map.b) + std::hypot(map.c, map.d));
    }
    auto middle = group().presentationCenter();
    auto reach =
        CGRect::make(middle.x + arm.x, middle.y + arm.y, 0, 0).insetBy(-radius * growth, -radius * growth);
    return isInSight(group(), reach.unionWith(placeOnScreen(group())));
}

void TransformNode::applyTransform()
{
    auto arm = this->arm();
    auto transform = CGAffineTransform::translation(-arm.x, -arm.y)
                         .concatenating(transformOf(numbers_.presentation()))
                         .concatenating(CGAffineTransform::translation(arm.x, arm.y));
    for (auto part : {transform.a, transform.b, transform.c, transform.d, transform.tx, transform.ty}) {
        if (!std::isfinite(part))
            transform = {};
    }
    UIView::performWithoutAnimation([&] { group().setTransform(transform); });
}

CGAffineTransform ScaleEffectModifier::Node::transformOf(const std::vector<double>& numbers) const
{
    return CGAffineTransform::scale(numbers[0], numbers[1]);
}

} // namespace platform
