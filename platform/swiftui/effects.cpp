// SPDX-License-Identifier: MIT
#include "platform/swiftui/effects.h"

#include "platform/graphics/CGContext.h"

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

class ClipShapeNode::MaskView : public UIView {
public:
    void setOutline(Outline outline)
    {
        outline_ = std::move(outline);
        setNeedsDisplay();
    }
    UIBezierPath path() const { return outline_(bounds()); }
    void draw(CGContext& context, CGRect) override { context.fill(path(), UIColor::black()); }
    bool pointInside(CGPoint point) const override { return path().contains(point); }

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
    , numbers_({shadow_.radius, shadow_.offset.width, shadow_.offset.height}, [this] { show(); })
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
    , numbers_(std::move(numbers), [this] { applyTransform(); })
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

void TransformNode::applyTransform()
{
    auto size = placedRect().size;
    CGPoint arm{(anchor_.x - 0.5) * size.width, (anchor_.y - 0.5) * size.height};
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
