// SPDX-License-Identifier: MIT
#include "platform/swiftui/hover.h"

#include "platform/swiftui/EnvironmentValues.h"

#include <utility>

namespace platform {

// --- Being told ----------------------------------------------------------------------------------

class HoverModifier::Node::Group : public GroupView {
public:
    std::function<void(bool)> action;
    void pointerEntered() override { tell(true); }
    void pointerExited() override { tell(false); }

private:
    void tell(bool isOver)
    {
        if (auto present = action) // it may replace itself, or the whole view
            present(isOver);
    }
};

HoverModifier::Node::Node(const NodeContext& context, const HoverModifier& modifier)
    : Node(context, std::make_shared<Group>())
{
    updateModifier(modifier);
}

HoverModifier::Node::Node(const NodeContext& context, std::shared_ptr<Group> group)
    : GroupNode(context, group)
    , hovered_(std::move(group))
{
    hovered_->touches = GroupView::Touches::content; // texts and pictures too
}

HoverModifier::Node::~Node()
{
    hovered_->action = nullptr; // somebody may keep the view
}

void HoverModifier::Node::updateModifier(const HoverModifier& modifier)
{
    hovered_->action = modifier.action;
}

// --- Being seen ----------------------------------------------------------------------------------

namespace {

constexpr CGFloat reach = 6; // of the ground around the content
constexpr CGFloat cornerRadiusOfGround = 10;
constexpr CGFloat liftedScale = 1.06;
constexpr double movingTime = 0.15; // seconds

} // namespace

class HoverEffectModifier::Node::Group : public GroupView {
public:
    Group()
    {
        ground_->setUserInteractionEnabled(false);
        ground_->accessibility().isHidden = true;
        ground_->setBackgroundColor(UIColor::tertiarySystemFill());
        ground_->setCornerRadius(cornerRadiusOfGround);
        ground_->setAlpha(0);
    }
    HoverEffect effect = HoverEffect::automatic;
    bool isEnabled = true;
    const std::shared_ptr<UIView>& ground() const { return ground_; }

    void placeGround()
    {
        UIView::performWithoutAnimation([this] { ground_->setFrame(bounds().insetBy(-reach, -reach)); });
    }
    void show()
    {
        bool isShown = isOver_ && isEnabled;
        bool isLift = effect == HoverEffect::lift;
        auto change = [this, isShown, isLift] {
            ground_->setAlpha(isShown && !isLift ? 1 : 0);
            setTransform(isShown && isLift ? CGAffineTransform::scale(liftedScale, liftedScale)
                                           : CGAffineTransform());
        };
        if (window() && !traitCollection().prefersReducedMotion)
            UIView::animate(AnimationTiming::easeOut(movingTime), change);
        else
            change();
    }
    void pointerEntered() override
    {
        isOver_ = true;
        show();
    }
    void pointerExited() override
    {
        isOver_ = false;
        show();
    }

private:
    std::shared_ptr<UIView> ground_ = std::make_shared<UIView>();
    bool isOver_ = false;
};

HoverEffectModifier::Node::Node(const NodeContext& context, const HoverEffectModifier& modifier)
    : Node(context, modifier, std::make_shared<Group>())
{
}

HoverEffectModifier::Node::Node(const NodeContext& context, const HoverEffectModifier& modifier,
                                std::shared_ptr<Group> group)
    : GroupNode(context, group)
    , hovered_(std::move(group))
{
    hovered_->effect = modifier.effect;
    hovered_->isEnabled = environment<IsEnabledKey>();
}

void HoverEffectModifier::Node::appendContents(std::vector<std::shared_ptr<UIView>>& views) const
{
    views.push_back(hovered_->ground());
    GroupNode::appendContents(views);
}

void HoverEffectModifier::Node::refresh()
{
    forgetSources();
    hovered_->isEnabled = environment<IsEnabledKey>();
    hovered_->show();
}

void HoverEffectModifier::Node::updateModifier(const HoverEffectModifier& modifier)
{
    hovered_->effect = modifier.effect;
    hovered_->show();
}

void HoverEffectModifier::Node::arrange(CGRect rect, const ProposedSize& proposal)
{
    GroupNode::arrange(rect, proposal);
    hovered_->placeGround();
}

} // namespace platform
