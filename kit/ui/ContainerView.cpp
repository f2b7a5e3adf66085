// SPDX-License-Identifier: MIT
#include "kit/ui/ContainerView.h"

#include "kit/theme/Spacing.h"

#include "platform/uikit/NSLayoutConstraint.h"

namespace zelk {

std::shared_ptr<ContainerView> ContainerView::make(const std::shared_ptr<platform::UIView>& accessory)
{
    constexpr double accessoryShare = 0.8;
    auto container = std::make_shared<ContainerView>();
    container->setClipsToBounds(false);
    container->addSubview(accessory);
    accessory->setTranslatesAutoresizingMaskIntoConstraints(false);
    auto height = accessory->intrinsicContentSize().height;
    container->setFrame(platform::CGRect::make(0, 0, 0, height + Spacing::_200));
    platform::NSLayoutConstraint::activateConstraints(
        {accessory->widthAnchor().constraintEqualTo(container->widthAnchor(), accessoryShare, 0),
         accessory->centerXAnchor().constraintEqualTo(container->centerXAnchor()),
         accessory->centerYAnchor().constraintEqualTo(container->centerYAnchor())});
    return container;
}

} // namespace zelk
