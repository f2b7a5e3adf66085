// SPDX-License-Identifier: MIT
#include "platform/swiftui/Stepper.h"

#include "platform/uikit/UIStepper.h"

namespace platform {

StepperButtons::Node::Node(const NodeContext& context, const StepperButtons& view)
    : ControlNode(context)
    , record_(view)
    , stepper_(std::make_shared<UIStepper>())
{
    stepper_->addAction([this](UIControl&) { userChanged(); }, {UIControlEvents::valueChanged});
    readSources();
    setPlatformView(stepper_);
}

StepperButtons::Node::~Node()
{
    stepper_->removeAllActions(); // somebody may keep the view
}

void StepperButtons::Node::update(const StepperButtons& view)
{
    record_ = view;
    refresh();
}

void StepperButtons::Node::readSources()
{
    readSurroundings(*stepper_);
    nameView(*stepper_, record_.name);
    stepper_->setRange(record_.options.in.proper({0, 100}));
    stepper_->setStepValue(record_.options.step);
    stepper_->setWraps(record_.options.wraps);
    record_.value.registerReader(*this);
    stepper_->setValue(stepper_->range().clamped(record_.value.get())); // no number shows the lower end
}

void StepperButtons::Node::userChanged()
{
    auto stepper = stepper_;
    auto binding = record_.value; // writing it may remove this
    binding.set(stepper->value());
    stepper->setValue(stepper->range().clamped(binding.get()));
}

} // namespace platform
