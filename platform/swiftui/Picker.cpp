// SPDX-License-Identifier: MIT
#include "platform/swiftui/Picker.h"

#include "platform/swiftui/EnvironmentValues.h"
#include "platform/uikit/UIMenuButton.h"
#include "platform/uikit/UIPickerView.h"
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

// --- The menu ------------------------------------------------------------------------------------

MenuChoice::Node::Node(const NodeContext& context, const MenuChoice& view)
    : ControlNode(context)
    , choice_(view.choice)
    , button_(std::make_shared<UIMenuButton>())
    , onChange_(button_->addAction([this](UIControl&) { userChanged(); }, {UIControlEvents::valueChanged}))
{
    readSources();
    setPlatformView(button_);
}

MenuChoice::Node::~Node()
{
    button_->removeAction(onChange_); // somebody may keep the view
}

void MenuChoice::Node::update(const MenuChoice& view)
{
    bool isAsWide = view.choice.titles == choice_.titles;
    choice_ = view.choice;
    refresh();
    if (!isAsWide)
        invalidateLayout();
}

void MenuChoice::Node::readSources()
{
    readSurroundings(*button_);
    nameView(*button_, choice_.name);
    if (button_->titles() != choice_.titles)
        button_->setTitles(choice_.titles);
    button_->setSelectedIndex(choice_.selected);
}

void MenuChoice::Node::userChanged()
{
    auto button = button_;
    if (auto select = choice_.select) // which may remove this
        button->setSelectedIndex(select(button->selectedIndex()));
}

// --- The wheel -----------------------------------------------------------------------------------

class WheelChoice::Node::Delegate : public UIPickerViewDelegate {
public:
    PickerChoice choice;

    int numberOfRows(const UIPickerView&, int) const override
    {
        return static_cast<int>(choice.titles.size());
    }
    std::string titleForRow(const UIPickerView&, int row, int) const override
    {
        auto index = static_cast<std::size_t>(row);
        return index < choice.titles.size() ? choice.titles[index] : std::string();
    }
    void didSelectRow(UIPickerView& picker, int row, int component) override
    {
        auto select = choice.select; // which may remove all of this
        auto view = std::static_pointer_cast<UIPickerView>(picker.shared_from_this());
        if (select)
            view->selectRow(select(row), component, Animated::yes);
    }
};

WheelChoice::Node::Node(const NodeContext& context, const WheelChoice& view)
    : ControlNode(context)
    , delegate_(std::make_shared<Delegate>())
    , picker_(std::make_shared<UIPickerView>())
{
    delegate_->choice = view.choice;
    picker_->setDelegate(delegate_);
    readSources();
    setPlatformView(picker_);
}

WheelChoice::Node::~Node()
{
    delegate_->choice.select = nullptr; // somebody may keep the view
}

void WheelChoice::Node::update(const WheelChoice& view)
{
    bool isSame = view.choice.titles == delegate_->choice.titles;
    delegate_->choice = view.choice;
    if (!isSame)
        picker_->reloadAllComponents();
    refresh();
}

void WheelChoice::Node::readSources()
{
    readSurroundings(*picker_);
    nameView(*picker_, delegate_->choice.name);
    picker_->setEnabled(environment<IsEnabledKey>());
    picker_->selectRow(delegate_->choice.selected, 0, Animated::yes);
}

CGSize WheelChoice::Node::measure(const ProposedSize& proposal)
{
    return wide(proposal, 200, 60, picker_->intrinsicContentSize().height);
}

} // namespace platform
