// SPDX-License-Identifier: MIT
#include "platform/swiftui/Slider.h"

#include "platform/swiftui/ViewHost.h"
#include "platform/uikit/UISlider.h"

namespace platform {

using Events = UIControlEvents;

Slider::Node::Node(const NodeContext& context, const Slider& view)
    : ControlNode(context)
    , record_(view)
    , slider_(std::make_shared<UISlider>())
{
    slider_->addAction([this](UIControl&) { userChanged(); }, {Events::valueChanged});
    slider_->addAction([this](UIControl&) { editingChanged(true); }, {Events::touchDown});
    slider_->addAction([this](UIControl&) { editingChanged(false); },
                       {Events::touchUpInside | Events::touchUpOutside | Events::touchCancel});
    readSources();
    setPlatformView(slider_);
}

Slider::Node::~Node()
{
    slider_->removeAllActions(); // somebody may keep the view
    if (auto tell = record_.options.onEditingChanged; tell && slider_->isTracking())
        host().performAfterFlush([tell] { tell(false); }); // it goes in the middle of a drag
}

void Slider::Node::update(const Slider& view)
{
    record_ = view;
    refresh();
}

CGSize Slider::Node::measure(const ProposedSize& proposal)
{
    return wide(proposal, 200, 44, slider_->intrinsicContentSize().height);
}

void Slider::Node::readSources()
{
    readSurroundings(*slider_);
    nameView(*slider_, record_.options.label);
    slider_->setRange(record_.options.in.proper());
    slider_->setStepValue(record_.options.step);
    record_.value.registerReader(*this);
    slider_->setValue(slider_->range().clamped(record_.value.get())); // no number shows the lower end
}

void Slider::Node::userChanged()
{
    auto slider = slider_;
    auto binding = record_.value; // writing it may remove this
    bool isOneStep = !slider->isTracking();
    auto tell = record_.options.onEditingChanged;
    if (isOneStep && tell)
        tell(true);
    binding.set(slider->value());
    slider->setValue(slider->range().clamped(binding.get()));
    if (isOneStep && tell)
        tell(false);
}

void Slider::Node::editingChanged(bool isEditing) const
{
    if (auto tell = record_.options.onEditingChanged)
        tell(isEditing);
}

} // namespace platform
