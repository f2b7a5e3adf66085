// SPDX-License-Identifier: MIT
#include "platform/swiftui/mask.h"

#include "platform/swiftui/PlatformViewNode.h"
#include "platform/swiftui/alignedRect.h"
#include "platform/uikit/ViewAnimator.h"

#include <utility>

namespace platform {

class MaskNode::MaskContainer : public ViewContainer {
public:
    explicit MaskContainer(const MaskNode& node)
        : ViewContainer(node.host())
        , view(std::make_shared<GroupView>())
        , node_(node)
    {
    }
    UIView& containerView() const override { return *view; }
    void appendContents(std::vector<std::shared_ptr<UIView>>& views) const override
    {
        if (node_.maskChild_)
            node_.maskChild_->appendPlatformViews(views);
    }

    const std::shared_ptr<GroupView> view;
    bool isPlaced = false;
    CGSize size; // of what is masked

private:
    const MaskNode& node_; // owns this
};

namespace {

void stayInPlace(UIView& view)
{
    ViewAnimator::remove(view, {ViewAnimator::Property::center, ViewAnimator::Property::bounds});
    for (const auto& subview : view.subviews())
        stayInPlace(*subview);
}

} // namespace

MaskNode::MaskNode(const NodeContext& context, Alignment alignment)
    : GroupNode(context)
    , maskContainer_(std::make_unique<MaskContainer>(*this))
    , alignment_(alignment)
{
    group().setMask(maskContainer_->view);
}

MaskNode::~MaskNode()
{
    maskChild_.reset(); // before the container that it stands in
}

void MaskNode::forEachChild(const std::function<void(ViewNode&)>& visit) const
{
    GroupNode::forEachChild(visit);
    if (maskChild_)
        visit(*maskChild_);
}

NodeContext MaskNode::maskContext()
{
    auto inner = context().below(*this);
    inner.container = maskContainer_.get();
    return inner;
}

void MaskNode::setAlignment(Alignment alignment)
{
    if (alignment == alignment_)
        return;
    alignment_ = alignment;
    invalidateLayout();
}

void MaskNode::arrange(CGRect rect, const ProposedSize& proposal)
{
    GroupNode::arrange(rect, proposal);
    CGRect inside{{}, rect.size};
    placePlatformView(*maskContainer_->view, inside, maskContainer_->isPlaced);
    auto offer = ProposedSize::of(rect.size);
    maskChild_->place(alignedRect(*this, *maskChild_, maskChild_->sizeThatFits(offer), alignment_, inside),
                      offer);
    // What moves in the mask for a reason of its own, perhaps for ever, is not to move to its new size as well.
    if (std::exchange(maskContainer_->size, rect.size) != rect.size && !UIView::currentAnimation())
        stayInPlace(*maskContainer_->view);
}

} // namespace platform
