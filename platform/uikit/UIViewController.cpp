// SPDX-License-Identifier: MIT
// A controller's view, from its making to its going. Appearance is driven by the view: it begins when the view comes into a
// visible window, whoever put it there.
#include "platform/uikit/UIViewController.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Precondition.h"
#include "platform/uikit/UIPresentationController.h"
#include "platform/uikit/UIView.h"
#include "platform/uikit/UIWindow.h"

#include <algorithm>

namespace platform {

UIViewController::UIViewController()
{
    assertOnMainThread();
}

UIViewController::UIViewController(std::string nibName, std::shared_ptr<Bundle> bundle)
    : nibName_(std::move(nibName))
    , nibBundle_(std::move(bundle))
{
    assertOnMainThread();
}

UIViewController::~UIViewController()
{
    if (auto presentation = std::move(presentation_))
        presentation->abandon();
    // Whoever still holds the view holds a view without a controller.
    if (view_)
        view_->viewController_.reset();
}

const std::shared_ptr<UIView>& UIViewController::view()
{
    loadViewIfNeeded();
    return view_;
}

void UIViewController::loadViewIfNeeded()
{
    assertOnMainThread();
    if (view_)
        return;
    precondition(!weak_from_this().expired(), "a controller's view was asked for in its constructor");
    precondition(!isLoadingView_, "loadView asked for the view that it is to make");
    isLoadingView_ = true;
    loadView();
    isLoadingView_ = false;
    precondition(view_ != nullptr, "loadView has set no view");
    viewDidLoad();
}

void UIViewController::loadView()
{
    setView(std::make_shared<UIView>());
}

void UIViewController::setView(std::shared_ptr<UIView> view)
{
    assertOnMainThread();
    if (view == view_)
        return;
    if (view) {
        auto other = view->viewController_.lock();
        precondition(!other || other.get() == this, "a view was given to a second controller");
    }
    if (view_)
        view_->viewController_.reset();
    view_ = std::move(view);
    if (view_) {
        view_->viewController_ = std::static_pointer_cast<UIViewController>(shared_from_this());
        view_->updateSafeArea();
    }
}

void UIViewController::beginAppearance(Direction direction, Animated animated)
{
    auto isThere = appearance_ == Appearance::appeared || appearance_ == Appearance::appearing;
    if (isThere == (direction == Direction::appear))
        return;
    appearanceAnimated_ = animated;
    if (direction == Direction::appear) {
        appearance_ = Appearance::appearing;
        viewWillAppear(animated);
    } else {
        appearance_ = Appearance::disappearing;
        viewWillDisappear(animated);
    }
}

void UIViewController::endAppearance()
{
    if (appearance_ == Appearance::appearing) {
        if (isAppearanceHeld())
            return;
        appearance_ = Appearance::appeared;
        viewDidAppear(appearanceAnimated_);
    } else if (appearance_ == Appearance::disappearing) {
        appearance_ = Appearance::disappeared;
        viewDidDisappear(appearanceAnimated_);
    }
}

void UIViewController::addChild(std::shared_ptr<UIViewController> child)
{
    assertOnMainThread();
    precondition(child != nullptr, "a null controller was added as a child");
    for (auto above = std::static_pointer_cast<UIViewController>(shared_from_this()); above;
         above = above->parent())
        precondition(above != child, "a controller was added to itself or to a controller inside of it");
    if (child->parent().get() == this)
        return;
    child->willMove(this);
    if (child->parent())
        child->removeFromParent();
    children_.push_back(child);
    child->parent_ = std::static_pointer_cast<UIViewController>(shared_from_this());
}

void UIViewController::removeFromParent()
{
    assertOnMainThread();
    auto parent = parent_.lock();
    if (!parent)
        return;
    auto self = shared_from_this();
    std::erase_if(parent->children_, [&](const auto& child) { return child.get() == this; });
    parent_.reset();
    didMove(nullptr);
}

void UIViewController::setTitle(std::string title)
{
    assertOnMainThread();
    if (title == title_)
        return;
    title_ = std::move(title);
    auto window = responderWindow();
    if (window && window->rootViewController().get() == this)
        window->titleDidChange();
}

CGSize UIViewController::preferredContentSize() const
{
    return preferredContentSize_;
}

void UIViewController::setPreferredContentSize(CGSize size)
{
    assertOnMainThread();
    preferredContentSize_ = size;
}

UIEdgeInsets UIViewController::additionalSafeAreaInsets() const
{
    return additionalSafeAreaInsets_;
}

void UIViewController::setAdditionalSafeAreaInsets(UIEdgeInsets insets)
{
    assertOnMainThread();
    additionalSafeAreaInsets_ = insets;
    if (view_)
        view_->updateSafeArea();
}

const UITraitCollection& UIViewController::traitCollection() const
{
    static const UITraitCollection unknown;
    if (view_)
        return view_->traitCollection();
    auto above = parent();
    // Stays valid: the parent's view belongs to the parent, which its children do not outlive unnoticed.
    return above ? above->traitCollection() : unknown;
}

std::shared_ptr<UIResponder> UIViewController::next() const
{
    if (!view_)
        return nullptr;
    return view_->superview();
}

std::shared_ptr<UIWindow> UIViewController::responderWindow() const
{
    return view_ ? view_->window() : nullptr;
}

} // namespace platform
