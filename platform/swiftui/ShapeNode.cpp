// SPDX-License-Identifier: MIT
#include "platform/swiftui/ShapeNode.h"

#include "platform/swiftui/EnvironmentValues.h"
#include "platform/uikit/UIView.h"

#include <algorithm>
#include <numbers>
#include <utility>

namespace platform {

namespace {

// How far a line can reach out of the rectangle that its outline fills.
CGFloat outsetOf(const ShapeStyle& style)
{
    if (!style.stroke)
        return 0;
    auto corner = style.stroke->lineJoin == LineJoin::miter ? style.stroke->miterLimit : 1;
    return style.stroke->lineWidth / 2 * std::max(corner, std::numbers::sqrt2); // a square cap's corner
}

} // namespace

// Paints the outline as it was last told.
class ShapeNode::OutlineView : public UIView {
public:
    explicit OutlineView(ShapeNode& node)
        : node_(&node)
    {
        setUserInteractionEnabled(false);
    }
    // Somebody may keep the view for longer than the node.
    void letGoOfNode() { node_ = nullptr; }

    void draw(CGContext& context, CGRect) override
    {
        if (!node_)
            return;
        node_->shape_->setAnimatableData(node_->data_.drawn());
        auto path = node_->shape_->path(bounds().insetBy(node_->outset_, node_->outset_));
        auto color = node_->fromColor_.blended(node_->toColor_, node_->colorPart_.drawn().front());
        if (node_->style_.stroke)
            context.stroke(path, color, *node_->style_.stroke);
        else
            context.fill(path, color);
    }

private:
    ShapeNode* node_;
};

ShapeNode::ShapeNode(const NodeContext& context, std::unique_ptr<ErasedShape> shape, ShapeStyle style)
    : PlatformViewNode(context)
    , outlineView_(std::make_shared<OutlineView>(*this))
    , shape_(std::move(shape))
    , style_(std::move(style))
    , data_(shape_->animatableData(), [this] { outlineView_->setNeedsDisplay(); })
    , colorPart_({1}, [this] { outlineView_->setNeedsDisplay(); })
{
    fromColor_ = toColor_ = styleColor();
    setPlatformView(outlineView_);
}

ShapeNode::~ShapeNode()
{
    outlineView_->letGoOfNode();
}

UIColor ShapeNode::styleColor()
{
    return style_.color ? *style_.color : environment<ForegroundColorKey>().value_or(UIColor::label());
}

// The view is as large as the line needs; what it draws outside of itself would be cut off.
void ShapeNode::arrange(CGRect rect, const ProposedSize& proposal)
{
    outset_ = outsetOf(style_);
    PlatformViewNode::arrange(rect.insetBy(-outset_, -outset_), proposal);
}

void ShapeNode::refresh()
{
    setColor(styleColor());
}

void ShapeNode::setShape(std::unique_ptr<ErasedShape> shape, const ShapeStyle& style)
{
    style_ = style;
    if (outsetOf(style_) != outset_)
        invalidateLayout();
    setColor(styleColor());
    auto target = shape->animatableData();
    shape_ = std::move(shape);
    data_.set(target);
    outlineView_->setNeedsDisplay();
}

void ShapeNode::setColor(const UIColor& color)
{
    if (color == toColor_)
        return;
    fromColor_ = fromColor_.blended(toColor_, colorPart_.drawn().front());
    toColor_ = color;
    // Back to the beginning at once, and from there as the surroundings have it.
    UIView::performWithoutAnimation([&] { colorPart_.set({0}); });
    colorPart_.set({1});
    outlineView_->setNeedsDisplay();
}

} // namespace platform
