// SPDX-License-Identifier: MIT
#include "platform/swiftui/DatePicker.h"

#include "platform/swiftui/ConditionalContent.h"
#include "platform/swiftui/Text.h"
#include "platform/swiftui/accessibility.h"
#include "platform/swiftui/stacks.h"
#include "platform/uikit/UIDatePicker.h"

namespace platform {

namespace {

UIDatePickerMode modeOf(DatePickerComponents components)
{
    switch (components) {
    case DatePickerComponents::hourAndMinute:
        return UIDatePickerMode::time;
    case DatePickerComponents::date:
        return UIDatePickerMode::date;
    case DatePickerComponents::all:
        break;
    }
    return UIDatePickerMode::dateAndTime;
}

} // namespace

AnyView DatePicker::body() const
{
    auto caption = [&] { return Text{title} | accessibilityHidden(); };
    return AnyView(VStack{{.alignment = HorizontalAlignment::leading},
                          when(*labels == LabelsVisibility::visible, caption),
                          DateWheels{selection, options, title}});
}

DateWheels::Node::Node(const NodeContext& context, const DateWheels& view)
    : ControlNode(context)
    , record_(view)
    , picker_(std::make_shared<UIDatePicker>())
    , onChange_(picker_->addAction([this](UIControl&) { userChanged(); }, {UIControlEvents::valueChanged}))
{
    readSources();
    setPlatformView(picker_);
}

DateWheels::Node::~Node()
{
    picker_->removeAction(onChange_); // somebody may keep the view
}

void DateWheels::Node::update(const DateWheels& view)
{
    record_ = view;
    refresh();
}

void DateWheels::Node::readSources()
{
    readSurroundings(*picker_);
    nameView(*picker_, record_.name);
    picker_->setDatePickerMode(modeOf(record_.options.displayedComponents));
    picker_->setMinimumDate(record_.options.from);
    picker_->setMaximumDate(record_.options.to);
    record_.selection.registerReader(*this);
    picker_->setDate(record_.selection.get(), Animated::yes);
}

CGSize DateWheels::Node::measure(const ProposedSize& proposal)
{
    auto usual = picker_->sizeThatFits({}).width;
    return wide(proposal, usual, 80, picker_->intrinsicContentSize().height);
}

void DateWheels::Node::userChanged()
{
    auto picker = picker_;
    auto binding = record_.selection; // writing it may remove this
    binding.set(picker->date());
    picker->setDate(binding.get(), Animated::yes);
}

} // namespace platform
