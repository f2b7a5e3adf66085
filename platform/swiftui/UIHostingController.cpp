// SPDX-License-Identifier: MIT
#include "platform/swiftui/UIHostingController.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/swiftui/EnvironmentValues.h"
#include "platform/uikit/UIView.h"
#include "platform/uikit/UIWindow.h"

namespace platform {

// Hands its size to the host whenever it is laid out, and its surroundings to the controller.
class UIHostingControllerBase::HostingView : public UIView {
public:
    explicit HostingView(UIHostingControllerBase& controller)
        : controller_(&controller)
    {
    }
    void letGoOfController() { controller_ = nullptr; }

    void layoutSubviews() override
    {
        UIView::layoutSubviews();
        if (controller_)
            controller_->host().layout(bounds(), safeAreaInsets());
    }
    void safeAreaInsetsDidChange() override { setNeedsLayout(); }
    CGSize sizeThatFits(CGSize available) const override
    {
        return controller_ ? controller_->host().sizeThatFits(ProposedSize::of(available))
                           : UIView::sizeThatFits(available);
    }
    void tintColorDidChange() override
    {
        if (controller_)
            controller_->writeTint(*this);
    }
    void didMoveToWindow() override
    {
        if (controller_)
            controller_->applyColorScheme();
    }

private:
    UIHostingControllerBase* controller_; // which lets go of it
};

UIHostingControllerBase::UIHostingControllerBase()
    : colorSchemes_(std::make_shared<PreferredColorSchemes>())
    , host_(std::make_unique<ViewHost>(*this))
{
    colorSchemes_->onChange = [this] { host_->performAfterFlush([this] { applyColorScheme(); }); };
}

UIHostingControllerBase::~UIHostingControllerBase()
{
    colorSchemes_->onChange = nullptr;
    if (auto styled = styled_.lock())
        styled->setOverrideUserInterfaceStyle(UIUserInterfaceStyle::unspecified);
    // Somebody may keep the view for longer than the controller.
    if (auto view = std::dynamic_pointer_cast<HostingView>(viewIfLoaded()))
        view->letGoOfController();
}

void UIHostingControllerBase::loadView()
{
    setView(std::make_shared<HostingView>(*this));
}

void UIHostingControllerBase::viewDidLoad()
{
    writeEnvironment(traitCollection());
    writeTint(*view());
    host_->environment().set<PreferredColorSchemesKey>(colorSchemes_);
    host_->mount([this](const NodeContext& context) { return makeRootNode(context); });
}

CGSize UIHostingControllerBase::sizeThatFits(CGSize available)
{
    assertOnMainThread();
    loadViewIfNeeded();
    return host_->sizeThatFits(ProposedSize::of(available));
}

void UIHostingControllerBase::flush()
{
    assertOnMainThread();
    host_->flush();
    if (auto view = viewIfLoaded())
        view->layoutIfNeeded();
}

void UIHostingControllerBase::viewWillAppear(Animated animated)
{
    UIViewController::viewWillAppear(animated);
    host_->setAppeared(true);
}

void UIHostingControllerBase::viewDidDisappear(Animated animated)
{
    UIViewController::viewDidDisappear(animated);
    host_->setAppeared(false);
}

void UIHostingControllerBase::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIViewController::traitCollectionDidChange(previous);
    writeEnvironment(traitCollection());
}

void UIHostingControllerBase::writeEnvironment(const UITraitCollection& traits)
{
    auto& environment = host_->environment();
    environment.set<ColorSchemeKey>(
        traits.userInterfaceStyle == UIUserInterfaceStyle::dark ? ColorScheme::dark : ColorScheme::light);
    environment.set<LayoutDirectionKey>(traits.layoutDirection == UIUserInterfaceLayoutDirection::rightToLeft
                                            ? LayoutDirection::rightToLeft
                                            : LayoutDirection::leftToRight);
    environment.set<SizeCategoryKey>(traits.preferredContentSizeCategory);
    environment.set<TextScaleKey>(traits.textScale);
    environment.set<DisplayScaleKey>(traits.displayScale);
    environment.set<ReduceMotionKey>(traits.prefersReducedMotion);
}

void UIHostingControllerBase::writeTint(const UIView& view)
{
    host_->environment().set<TintKey>(view.tintColor());
}

void UIHostingControllerBase::applyColorScheme()
{
    auto target = viewIfLoaded();
    if (!target)
        return;
    if (auto window = target->window(); window && window->rootViewController().get() == this)
        target = window;
    auto scheme = colorSchemes_->preferred();
    auto former = styled_.lock();
    styled_.reset();
    if (scheme) {
        styled_ = target;
        target->setOverrideUserInterfaceStyle(*scheme == ColorScheme::dark ? UIUserInterfaceStyle::dark
                                                                           : UIUserInterfaceStyle::light);
    }
    if (former && (former != target || !scheme))
        former->setOverrideUserInterfaceStyle(UIUserInterfaceStyle::unspecified);
}

} // namespace platform
