// SPDX-License-Identifier: MIT
#include "platform/uikit/UINavigationController.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/UIContainment_p.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UIImageView.h"
#include "platform/uikit/UINavigationBar.h"
#include "platform/uikit/UIView.h"
#include "platform/uikit/snapshot.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

constexpr double slideTime = 0.35;    // seconds
constexpr CGFloat parallaxPart = 0.3; // of the width that the deeper page's neighbour moves

// Null when it cannot be painted.
std::shared_ptr<UIView> pictureOf(UIView& page)
{
    auto image = snapshot(page, page.bounds().size, std::max(page.traitCollection().displayScale, 1.0));
    if (!image)
        return nullptr;
    auto picture = std::make_shared<UIImageView>(std::move(*image));
    picture->setBackgroundColor(page.backgroundColor().value_or(UIColor::systemBackground()));
    picture->accessibility().isHidden = true;
    return picture;
}

} // namespace

// Goes back by the key that browsers use.
class UINavigationController::StackView : public UIView {
public:
    explicit StackView(UINavigationController& owner)
        : owner_(std::static_pointer_cast<UINavigationController>(owner.shared_from_this()))
    {
    }
    bool performKeyEquivalent(const UIPress& press) override
    {
        auto owner = owner_.lock();
        return owner && press.modifiers.rawValue == UIKeyModifierFlags::alternate
            && press.key == (owner->isRightToLeft() ? UIKeyCode::right : UIKeyCode::left)
            && owner->popViewController(Animated::yes);
    }

private:
    const std::weak_ptr<UINavigationController> owner_;
};

UINavigationController::UINavigationController()
    : bar_(std::make_shared<UINavigationBar>())
{
    bar_->onBack = [this] { popViewController(Animated::yes); };
}

UINavigationController::~UINavigationController()
{
    bar_->onBack = nullptr; // somebody may keep it
}

std::shared_ptr<UINavigationController> UINavigationController::make(std::shared_ptr<UIViewController> root)
{
    auto controller = std::make_shared<UINavigationController>();
    controller->setViewControllers({std::move(root)});
    return controller;
}

void UINavigationController::loadView()
{
    auto view = std::make_shared<StackView>(*this);
    view->setClipsToBounds(true); // of pages that slide
    setView(view);
}

void UINavigationController::setViewControllers(std::vector<std::shared_ptr<UIViewController>> stack,
                                                Animated animated)
{
    assertOnMainThread();
    auto keptAlive = weak_from_this().lock();
    finishSliding();
    auto before = topViewController();
    auto next = stack.empty() ? nullptr : stack.back();
    auto isDeeper = std::ranges::find(stack_, next) == stack_.end();
    auto leavingView = before && next && before != next ? before->viewIfLoaded() : nullptr;
    auto slides = animated == Animated::yes && leavingView && leavingView->window()
        && !traitCollection().prefersReducedMotion;
    auto picture = slides ? pictureOf(*leavingView) : nullptr;
    containment::replace(*this, stack_, std::move(stack));
    showTop();
    if (picture && topViewController() == next)
        slide(std::move(picture), isDeeper ? Direction::deeper : Direction::back);
    if (auto action = onStackChange)
        action();
}

std::shared_ptr<UIViewController> UINavigationController::topViewController() const
{
    return stack_.empty() ? nullptr : stack_.back();
}

void UINavigationController::pushViewController(std::shared_ptr<UIViewController> controller,
                                                Animated animated)
{
    auto stack = stack_;
    stack.push_back(std::move(controller));
    setViewControllers(std::move(stack), animated);
}

std::shared_ptr<UIViewController> UINavigationController::popViewController(Animated animated)
{
    if (stack_.size() < 2)
        return nullptr;
    auto popped = stack_.back();
    setViewControllers({stack_.begin(), stack_.end() - 1}, animated);
    return popped;
}

std::vector<std::shared_ptr<UIViewController>>
UINavigationController::popToRootViewController(Animated animated)
{
    if (stack_.size() < 2)
        return {};
    std::vector popped(stack_.begin() + 1, stack_.end());
    setViewControllers({stack_.front()}, animated);
    return popped;
}

void UINavigationController::setNavigationBarHidden(bool hidden)
{
    assertOnMainThread();
    isBarHidden_ = hidden;
    showTop();
}

bool UINavigationController::isRightToLeft() const
{
    auto own = viewIfLoaded();
    return own && own->effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
}

CGRect UINavigationController::pageFrame() const
{
    auto own = viewIfLoaded();
    auto all = own->bounds();
    if (isBarHidden_)
        return all;
    auto barHeight = std::min(UINavigationBar::height + own->safeAreaInsets().top, all.height());
    return CGRect::make(all.minX(), all.minY() + barHeight, all.width(), all.height() - barHeight);
}

void UINavigationController::updateNavigationBar()
{
    auto top = topViewController();
    auto hasBack = stack_.size() > 1;
    bar_->show(top ? top->title() : "", hasBack, hasBack ? stack_[stack_.size() - 2]->title() : "");
}

void UINavigationController::showTop()
{
    auto own = viewIfLoaded();
    if (!own)
        return;
    updateNavigationBar();
    UIView::performWithoutAnimation([&] {
        if (auto top = topViewController()) {
            top->view()->setAutoresizingMask({});
            top->view()->setFrame(pageFrame());
            containment::show(*this, stack_, {&top, 1});
        }
        auto area = pageFrame();
        bar_->setFrame(CGRect::make(area.minX(), own->bounds().minY(), area.width(),
                                    area.minY() - own->bounds().minY()));
        if (isBarHidden_)
            bar_->removeFromSuperview();
        else
            own->addSubview(bar_); // in front of pages that slide
    });
}

// Both pages move together; the deeper one is in front and moves further. What leaves is a picture: its controller has
// disappeared, and may be gone.
void UINavigationController::slide(std::shared_ptr<UIView> leaving, Direction direction)
{
    auto own = view();
    auto coming = topViewController()->view();
    auto isDeeper = direction == Direction::deeper;
    auto width = own->bounds().width() * (isRightToLeft() ? -1 : 1);
    auto deep = CGAffineTransform::translation(width, 0);
    auto shallow = CGAffineTransform::translation(-width * parallaxPart, 0);
    leaving_ = leaving;
    UIView::performWithoutAnimation([&] {
        leaving->setFrame(pageFrame());
        if (isDeeper)
            own->insertSubviewBelow(leaving, *coming);
        else
            own->insertSubviewAbove(leaving, *coming);
        coming->setTransform(isDeeper ? deep : shallow);
    });
    auto number = ++slides_;
    std::weak_ptr<UINavigationController> weak =
        std::static_pointer_cast<UINavigationController>(shared_from_this());
    UIView::animate(
        AnimationTiming::easeOut(slideTime),
        [&] {
            coming->setTransform({});
            leaving->setTransform(isDeeper ? shallow : deep);
        },
        [weak, number](bool) {
            auto self = weak.lock();
            if (self && self->slides_ == number)
                self->finishSliding();
        });
}

void UINavigationController::finishSliding()
{
    auto leaving = std::exchange(leaving_, nullptr);
    if (!leaving)
        return;
    ++slides_;
    leaving->removeFromSuperview();
    if (auto top = topViewController(); top && top->isViewLoaded())
        top->view()->removeAllAnimations();
}

void UINavigationController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    showTop();
}

void UINavigationController::viewWillLayoutSubviews()
{
    UIViewController::viewWillLayoutSubviews();
    auto own = viewIfLoaded();
    auto area = pageFrame();
    auto place = [&](UIView& page) {
        // Not the frame: it may be on its way, under a transform.
        page.setBounds({page.bounds().origin, area.size});
        page.setCenter(area.center());
    };
    if (auto top = topViewController())
        place(*top->view());
    if (leaving_)
        place(*leaving_);
    bar_->setFrame(
        CGRect::make(area.minX(), own->bounds().minY(), area.width(), area.minY() - own->bounds().minY()));
}

void UINavigationController::viewSafeAreaInsetsDidChange()
{
    UIViewController::viewSafeAreaInsetsDidChange();
    if (auto own = viewIfLoaded())
        own->setNeedsLayout();
}

UIStatusBarStyle UINavigationController::preferredStatusBarStyle() const
{
    const auto top = topViewController();
    return top ? top->preferredStatusBarStyle() : UIViewController::preferredStatusBarStyle();
}

} // namespace platform
