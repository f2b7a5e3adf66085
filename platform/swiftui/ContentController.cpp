// SPDX-License-Identifier: MIT
#include "platform/swiftui/ContentController.h"

#include "platform/swiftui/EnvironmentValues.h"
#include "platform/swiftui/PreferredColorSchemes.h"
#include "platform/uikit/UINavigationController.h"
#include "platform/uikit/UIView.h"

#include <utility>

namespace platform {

void DismissAction::operator()() const
{
    auto controller = controller_.lock();
    if (!controller)
        return;
    auto navigation = controller->navigationController();
    if (navigation && navigation->viewControllers().size() > 1
        && navigation->topViewController() == controller)
        navigation->popViewController();
    else if (controller->presentingViewController())
        controller->presentingViewController()->dismiss(Animated::yes);
}

ContentController::ContentController(AnyView content, std::shared_ptr<EnvironmentScope> surroundings)
    : content_(std::move(content))
    , scope_(std::make_shared<EnvironmentScope>(std::move(surroundings)))
{
}

ContentController::~ContentController() = default;

void ContentController::setContent(AnyView content)
{
    content_ = std::move(content);
    if (auto* node = host().root())
        updateNode(*node, content_);
}

void ContentController::viewDidLoad()
{
    auto self = std::static_pointer_cast<UIViewController>(weak_from_this().lock());
    scope_->set<DismissKey>(DismissAction(self));
    scope_->set<AccessibilityHiddenKey>(false); // whatever is hidden around the place that wants this
    UIHostingControllerBase::viewDidLoad();
}

std::unique_ptr<ViewNode> ContentController::makeRootNode(const NodeContext& context)
{
    // What is a matter of this controller's own view and not of the place.
    scope_->set<PreferredColorSchemesKey>(context.environment->value<PreferredColorSchemesKey>(nullptr));
    writeTraits();
    auto inner = context;
    inner.environment = scope_;
    return makeNode(inner, content_);
}

void ContentController::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIHostingControllerBase::traitCollectionDidChange(previous);
    writeTraits();
}

void ContentController::writeTraits()
{
    const auto& traits = traitCollection();
    scope_->set<ColorSchemeKey>(traits.userInterfaceStyle == UIUserInterfaceStyle::dark ? ColorScheme::dark
                                                                                        : ColorScheme::light);
    scope_->set<DisplayScaleKey>(traits.displayScale);
}

} // namespace platform
