// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSObject.h"
#include "platform/graphics/Geometry.h"
#include "platform/uikit/UIResponder.h"
#include "platform/uikit/UITraitCollection.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform {

class Bundle;
class UINavigationController;
class UIPopoverPresentationController;
class UIPresentationController;
class UISheetPresentationController;
class UISplitViewController;
class UITabBarController;

enum class UIStatusBarStyle { automatic, lightContent, darkContent };
enum class UIModalPresentationStyle {
    automatic,
    fullScreen,
    pageSheet,
    formSheet,
    overFullScreen,
    popover,
    none
};
enum class UIModalTransitionStyle { coverVertical, crossDissolve };
enum class Animated { no, yes };

// Owns a view and manages it through its life. Events come in this order and back:
// loadView, viewDidLoad, willMove/didMove(toParent), viewWillAppear, viewWillLayoutSubviews, layout,
// viewDidLayoutSubviews, viewDidAppear; viewWillDisappear, viewDidDisappear. A parent owns its children.
// Main thread only.
class UIViewController : public UIResponder {
public:
    UIViewController();
    // The platform's designated initialiser. There are no nib files here: both arguments are kept and unused.
    UIViewController(std::string nibName, std::shared_ptr<Bundle> bundle);
    ~UIViewController() override;

    // The view, made by loadView on first use. Never null: a loadView that sets no view stops the process.
    const std::shared_ptr<UIView>& view();
    std::shared_ptr<UIView> viewIfLoaded() const { return view_; }
    bool isViewLoaded() const { return view_ != nullptr; }
    void loadViewIfNeeded();
    void setView(std::shared_ptr<UIView> view);

    virtual void loadView(); // default: a plain UIView
    virtual void viewDidLoad() { }
    virtual void viewWillAppear(Animated) { }
    virtual void viewDidAppear(Animated) { }
    virtual void viewWillDisappear(Animated) { }
    virtual void viewDidDisappear(Animated) { }
    virtual void viewWillLayoutSubviews() { }
    virtual void viewDidLayoutSubviews() { }
    virtual void viewSafeAreaInsetsDidChange() { }
    virtual void traitCollectionDidChange(const UITraitCollection& /*previous*/) { }

    // --- Containment ------------------------------------------------------------------------------
    std::shared_ptr<UIViewController> parent() const { return parent_.lock(); }
    const std::vector<std::shared_ptr<UIViewController>>& children() const { return children_; }
    // Calls the child's willMove(toParent: this). As on the platform the caller sends didMove; when the child's view
    // is already in the window's tree, or comes there later, its appearance events follow either way.
    void addChild(std::shared_ptr<UIViewController> child);
    // Calls didMove(toParent: null). As on the platform the caller sends willMove(null) and removes the view.
    void removeFromParent();
    virtual void willMove(UIViewController* /*toParent*/) { }
    virtual void didMove(UIViewController* /*toParent*/) { }

    std::shared_ptr<UINavigationController> navigationController() const;
    std::shared_ptr<UISplitViewController> splitViewController() const;
    std::shared_ptr<UITabBarController> tabBarController() const;

    // --- Presentation -----------------------------------------------------------------------------
    // Shows `controller` in front of the window that this one's view is in, on behalf of the outermost parent of this
    // one. `completion` comes when it has appeared. One at a time: while that parent presents already, or while no window
    // holds this view, the call is logged and does nothing, and `completion` does not come. The presenter keeps the
    // presented controller. Requires: `controller` has no parent and is not presented.
    void present(std::shared_ptr<UIViewController> controller, Animated animated,
                 std::function<void()> completion = {});
    // Ends what this controller presents, with all that is presented from there; when it presents nothing, its own
    // presentation. Interrupts a presentation on its way. `completion` comes when it has disappeared; at once when
    // there is nothing to end.
    void dismiss(Animated animated, std::function<void()> completion = {});
    // What this controller or an ancestor of it presents, until it has gone; null when nothing.
    std::shared_ptr<UIViewController> presentedViewController() const;
    // Who presents this controller or an ancestor of it; null when nobody does.
    std::shared_ptr<UIViewController> presentingViewController() const;
    bool isBeingPresented() const; // is on its way
    bool isBeingDismissed() const; // is on its way out
    UIModalPresentationStyle modalPresentationStyle() const { return modalPresentationStyle_; }
    void
    setModalPresentationStyle(UIModalPresentationStyle style); // the next presentation's; default automatic
    UIModalTransitionStyle modalTransitionStyle() const { return modalTransitionStyle_; }
    void setModalTransitionStyle(UIModalTransitionStyle style);

    // The controller that presents this one or an ancestor of it.
    virtual std::shared_ptr<UIPresentationController> presentationController() const;
    std::shared_ptr<UISheetPresentationController> sheetPresentationController() const;
    std::shared_ptr<UIPopoverPresentationController> popoverPresentationController() const;

    virtual UIStatusBarStyle preferredStatusBarStyle() const { return UIStatusBarStyle::automatic; }
    virtual const std::string& title() const { return title_; }
    virtual void setTitle(std::string title); // a window shows its root controller's title
    // The size the content would like, for who places it; zero when it has no wish.
    CGSize preferredContentSize() const;
    void setPreferredContentSize(CGSize size);
    UIEdgeInsets additionalSafeAreaInsets() const;
    void setAdditionalSafeAreaInsets(UIEdgeInsets insets);
    const UITraitCollection& traitCollection() const;

    std::shared_ptr<UIResponder> next() const override;

protected:
    std::shared_ptr<UIWindow> responderWindow() const override;
    // Makes what is to present this controller over `presenting`. The default goes by the presentation style.
    virtual std::shared_ptr<UIPresentationController>
    makePresentationController(const std::shared_ptr<UIViewController>& presenting);

private:
    friend class UIView;
    friend class UIWindow;
    friend class ViewLayout;
    friend class UIPresentationController;
    enum class Appearance { disappeared, appearing, appeared, disappearing };
    enum class Direction { appear, disappear };
    // Each does nothing when there is nothing to do: appearance follows the view, whoever moves it.
    void beginAppearance(Direction direction, Animated animated = Animated::no);
    void endAppearance();
    // Whether a transition will end its appearance, or that of a controller around it.
    bool isAppearanceHeld() const;
    std::shared_ptr<UIViewController> outermostParent() const;
    void viewDidLeaveWindow();

    // main thread only
    std::shared_ptr<UIView> view_;
    std::weak_ptr<UIViewController> parent_;
    std::vector<std::shared_ptr<UIViewController>> children_;
    Appearance appearance_ = Appearance::disappeared;
    Animated appearanceAnimated_ = Animated::no;
    bool holdsAppearance_ = false;
    UIModalPresentationStyle modalPresentationStyle_ = UIModalPresentationStyle::automatic;
    UIModalTransitionStyle modalTransitionStyle_ = UIModalTransitionStyle::coverVertical;
    std::shared_ptr<UIPresentationController> presentation_; // of what this one presents
    bool isLoadingView_ = false;
    std::string title_;
    std::string nibName_;
    std::shared_ptr<Bundle> nibBundle_;
    CGSize preferredContentSize_;
    UIEdgeInsets additionalSafeAreaInsets_;
};

} // namespace platform
