// SPDX-License-Identifier: MIT
#include "platform/swiftui/UIHostingController.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/swiftui/EnvironmentValues.h"
#include "platform/uikit/UIView.h"

namespace platform {

namespace {

// Hands its size to the host whenever it is laid out.
class HostingView : public UIView {
public:
    explicit HostingView(ViewHost& host)
        : host_(&host)
    {
    }
    void letGoOfHost() { host_ = nullptr; }

    void layoutSubviews() override
    {
        UIView::layoutSubviews();
        if (host_)
            host_->layout(bounds(), safeAreaInsets());
    }
    void safeAreaInsetsDidChange() override { setNeedsLayout(); }
    CGSize sizeThatFits(CGSize available) const override
    {
        return host_ ? host_->sizeThatFits(ProposedSize::of(available)) : UIView::sizeThatFits(available);
    }

private:
    ViewHost* host_; // its controller's, which lets go of it
};

} // namespace

UIHostingControllerBase::UIHostingControllerBase()
    : host_(std::make_unique<ViewHost>(*this))
{
}

UIHostingControllerBase::~UIHostingControllerBase()
{
    // Somebody may keep the view for longer than the controller.
    if (auto view = std::dynamic_pointer_cast<HostingView>(viewIfLoaded()))
        view->letGoOfHost();
}

void UIHostingControllerBase::loadView()
{
    setView(std::make_shared<HostingView>(*host_));
}

void UIHostingControllerBase::viewDidLoad()
{
    writeEnvironment(traitCollection());
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

} // namespace platform
