// SPDX-License-Identifier: MIT
#include "kit/media/FontPickerScreen.h"

namespace zelk {

using Controller = platform::UIFontPickerViewController;

std::shared_ptr<FontPickerScreen::Coordinator> FontPickerScreen::makeCoordinator() const
{
    return std::make_shared<Coordinator>(*this);
}

std::shared_ptr<Controller> FontPickerScreen::makeUIViewController(const Context& context) const
{
    auto picker = std::make_shared<Controller>();
    picker->setDelegate(context.coordinator);
    return picker;
}

void FontPickerScreen::updateUIViewController(Controller&, const Context& context) const
{
    context.coordinator->parent = *this;
}

void FontPickerScreen::Coordinator::fontPickerViewControllerDidPickFont(Controller& picker)
{
    auto pick = parent.didPickFont; // which may take this away
    if (pick && picker.selectedFont())
        pick(*picker.selectedFont());
}

void FontPickerScreen::Coordinator::fontPickerViewControllerDidCancel(Controller&)
{
    if (auto cancel = parent.didCancel)
        cancel();
}

} // namespace zelk
