// SPDX-License-Identifier: MIT
#include "platform/swiftui/ColorPicker.h"

#include "platform/uikit/UIColorWell.h"

namespace platform {

ColorWell::Node::Node(const NodeContext& context, const ColorWell& view)
    : ControlNode(context)
    , record_(view)
    , well_(std::make_shared<UIColorWell>())
    , onChange_(well_->addAction([this](UIControl&) { userChanged(); }, {UIControlEvents::valueChanged}))
{
    readSources();
    setPlatformView(well_);
}

ColorWell::Node::~Node()
{
    well_->removeAction(onChange_); // somebody may keep the view
}

void ColorWell::Node::update(const ColorWell& view)
{
    record_ = view;
    refresh();
}

void ColorWell::Node::readSources()
{
    readSurroundings(*well_);
    nameView(*well_, record_.name);
    record_.selection.registerReader(*this);
    well_->setSelectedColor(record_.selection.get());
}

void ColorWell::Node::userChanged()
{
    auto well = well_;
    auto binding = record_.selection; // writing it may remove this
    binding.set(*well->selectedColor());
    well->setSelectedColor(binding.get());
}

} // namespace platform
