// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/CGContext.h"
#include "platform/swiftui/AnimatableValues.h"
#include "platform/swiftui/PlatformViewNode.h"

#include <memory>
#include <optional>
#include <vector>

namespace platform {

// How an outline is painted.
struct ShapeStyle {
    std::optional<UIColor> color;      // none: the colour of the surroundings
    std::optional<StrokeStyle> stroke; // none: filled
    bool operator==(const ShapeStyle&) const = default;
};

// An outline of any type, for the node of all of them.
class ErasedShape {
public:
    virtual ~ErasedShape() = default;
    virtual UIBezierPath path(CGRect rect) const = 0;
    virtual std::vector<double> animatableData() const = 0; // empty: nothing of it moves
    virtual void setAnimatableData(const std::vector<double>& data) = 0;
};

// The node of shapes, without their types: a view that fills what is offered and paints the outline in it. The shape's
// numbers and its colour move when they change in an animation; in between the outline is asked for at each frame.
class ShapeNode : public PlatformViewNode {
public:
    ShapeNode(const NodeContext& context, std::unique_ptr<ErasedShape> shape, ShapeStyle style);
    ~ShapeNode() override;
    void refresh() override;

protected:
    void setShape(std::unique_ptr<ErasedShape> shape, const ShapeStyle& style);
    CGSize measure(const ProposedSize& proposal) override { return proposal.replacingUnspecified(); }
    void arrange(CGRect rect, const ProposedSize& proposal) override;

private:
    class OutlineView;
    void setColor(const UIColor& color);
    UIColor styleColor();

    std::shared_ptr<OutlineView> outlineView_;
    std::unique_ptr<ErasedShape> shape_;
    ShapeStyle style_;
    CGFloat outset_ = 0; // of the view beyond the node's place
    UIColor fromColor_, toColor_;
    AnimatableValues data_;
    AnimatableValues colorPart_; // of the way between the two colours
};

} // namespace platform
