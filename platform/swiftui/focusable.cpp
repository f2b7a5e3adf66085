// SPDX-License-Identifier: MIT
#include "platform/swiftui/focusable.h"

#include "platform/swiftui/EnvironmentValues.h"
#include "platform/uikit/ControlLook.h"

namespace platform {

namespace {

constexpr CGFloat cornerRadiusOfRing = 6;

} // namespace

FocusGroup::FocusGroup()
    : ring_(std::make_shared<FocusRing>())
{
}

FocusGroup::~FocusGroup() = default;

bool FocusGroup::becomeFirstResponder()
{
    auto done = GroupView::becomeFirstResponder();
    if (done)
        focusChanged(true);
    return done;
}

bool FocusGroup::resignFirstResponder()
{
    auto done = GroupView::resignFirstResponder();
    if (done)
        focusChanged(false);
    return done;
}

void FocusGroup::focusChanged(bool isFocused)
{
    ring_->setHidden(!isFocused);
    if (auto tell = onFocusChange) // it may replace itself, or the whole view
        tell(isFocused);
}

bool FocusGroup::pressesBegan(const UIPress& press)
{
    auto action = onKeyPress;
    return (action && action(press)) || GroupView::pressesBegan(press);
}

void FocusGroup::layoutSubviews()
{
    GroupView::layoutSubviews();
    ring_->showAround(bounds(), cornerRadiusOfRing);
}

FocusGroupNode::FocusGroupNode(const NodeContext& context, std::shared_ptr<FocusGroup> group)
    : GroupNode(context, group)
    , focusGroup_(std::move(group))
{
}

FocusGroupNode::~FocusGroupNode()
{
    // Somebody may keep the view.
    focusGroup_->onFocusChange = nullptr;
    focusGroup_->onKeyPress = nullptr;
    focusGroup_->isFocusable = false;
}

void FocusGroupNode::appendContents(std::vector<std::shared_ptr<UIView>>& views) const
{
    GroupNode::appendContents(views);
    views.push_back(focusGroup_->ring());
}

void FocusGroupNode::arrange(CGRect rect, const ProposedSize& proposal)
{
    GroupNode::arrange(rect, proposal);
    focusGroup_->setNeedsLayout();
}

// --- Modifiers -----------------------------------------------------------------------------------

FocusableModifier::Node::Node(const NodeContext& context, const FocusableModifier& modifier)
    : FocusGroupNode(context, std::make_shared<FocusGroup>())
{
    updateModifier(modifier);
}

void FocusableModifier::Node::updateModifier(const FocusableModifier& modifier)
{
    isFocusable_ = modifier.isFocusable;
    focusGroup().onFocusChange = modifier.onFocusChange;
    refresh();
}

void FocusableModifier::Node::refresh()
{
    forgetSources();
    focusGroup().isFocusable = isFocusable_ && environment<IsEnabledKey>();
    if (!focusGroup().isFocusable && focusGroup().isFirstResponder())
        focusGroup().resignFirstResponder();
}

KeyPressModifier::Node::Node(const NodeContext& context, const KeyPressModifier& modifier)
    : FocusGroupNode(context, std::make_shared<FocusGroup>())
{
    focusGroup().isFocusable = false; // the keys come from what is inside
    focusGroup().onKeyPress = modifier.action;
}

} // namespace platform
