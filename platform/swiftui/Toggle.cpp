// SPDX-License-Identifier: MIT
#include "platform/swiftui/Toggle.h"

#include "platform/swiftui/keyboardShortcut.h"
#include "platform/uikit/UISwitch.h"

#include <optional>

namespace platform {

class ToggleSwitch::Node::Switch final : public UISwitch {
public:
    std::optional<KeyboardShortcut> shortcut;
    bool performKeyEquivalent(const UIPress& press) override
    {
        return shortcut && shortcut->matches(press) && performPrimaryAction();
    }
};

ToggleSwitch::Node::Node(const NodeContext& context, const ToggleSwitch& view)
    : ControlNode(context)
    , record_(view)
    , switch_(std::make_shared<Switch>())
{
    switch_->addAction([this](UIControl&) { userChanged(); }, {UIControlEvents::valueChanged});
    readSources();
    setPlatformView(switch_);
}

ToggleSwitch::Node::~Node()
{
    switch_->removeAllActions(); // somebody may keep the view
    switch_->shortcut.reset();
}

void ToggleSwitch::Node::update(const ToggleSwitch& view)
{
    if (view == record_)
        return;
    record_ = view;
    refresh();
}

void ToggleSwitch::Node::readSources()
{
    readSurroundings(*switch_);
    nameView(*switch_, record_.name);
    switch_->shortcut = environment<KeyboardShortcutKey>();
    record_.isOn.registerReader(*this);
    switch_->setOn(record_.isOn.get(), switch_->window() ? Animated::yes : Animated::no);
}

void ToggleSwitch::Node::userChanged()
{
    auto view = switch_;
    auto binding = record_.isOn; // writing it may remove this
    binding.set(view->isOn());
    view->setOn(binding.get(), Animated::yes);
}

} // namespace platform
