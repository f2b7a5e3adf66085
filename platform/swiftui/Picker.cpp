// SPDX-License-Identifier: MIT
#include "platform/swiftui/Picker.h"

#include "platform/uikit/UISegmentedControl.h"

namespace platform {

SegmentedChoice::Node::Node(const NodeContext& context, const SegmentedChoice& view)
    : ControlNode(context)
    , choice_(view.choice)
    , control_(std::make_shared<UISegmentedControl>())
{
    control_->addAction([this](UIControl&) { userChanged(); }, {UIControlEvents::valueChanged});
    readSources();
    setPlatformView(control_);
}

SegmentedChoice::Node::~Node()
{
    control_->removeAllActions(); // somebody may keep the view
}

void SegmentedChoice::Node::update(const SegmentedChoice& view)
{
    bool isAsWide = view.choice.titles == choice_.titles;
    choice_ = view.choice;
    refresh();
    if (!isAsWide)
        invalidateLayout();
}

CGSize SegmentedChoice::Node::measure(const ProposedSize& proposal)
{
    return wide(proposal, control_->intrinsicContentSize().width, 0, control_->intrinsicContentSize().height);
}

void SegmentedChoice::Node::readSources()
{
    readSurroundings(*control_);
    nameView(*control_, choice_.name);
    control_->setTitles(choice_.titles);
    control_->setSelectedSegmentIndex(choice_.selected, control_->window() ? Animated::yes : Animated::no);
}

void SegmentedChoice::Node::userChanged()
{
    auto control = control_;
    if (auto select = choice_.select) // which may remove this
        control->setSelectedSegmentIndex(select(control->selectedSegmentIndex()), Animated::yes);
}

} // namespace platform
