// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIViewController.h"

#include <functional>
#include <memory>
#include <vector>

namespace platform {

class UINavigationBar;

// A stack of controllers, each one step deeper than the one before. The top one's view fills the controller's own below
// a bar with its title and a way back: the button there, Alt with the arrow that points to where reading begins, or the
// program's. Main thread only.
class UINavigationController : public UIViewController {
public:
    UINavigationController();
    ~UINavigationController() override;
    // A stack of one. Made by a function because a controller under construction cannot have children.
    static std::shared_ptr<UINavigationController> make(std::shared_ptr<UIViewController> root);

    // Root first.
    const std::vector<std::shared_ptr<UIViewController>>& viewControllers() const { return stack_; }
    // Requires: none is null, none comes twice. May be empty. Animated: as a push when the new top was not on the stack, as
    // a pop when it was; only on screen, and not where motion is reduced. A movement under way is cut short.
    void setViewControllers(std::vector<std::shared_ptr<UIViewController>> stack,
                            Animated animated = Animated::no);
    // Null for an empty stack.
    std::shared_ptr<UIViewController> topViewController() const;
    std::shared_ptr<UIViewController> visibleViewController() const { return topViewController(); }

    // Requires: not on the stack yet.
    void pushViewController(std::shared_ptr<UIViewController> controller, Animated animated = Animated::no);
    // What was on top; null when only the root is left, which stays.
    std::shared_ptr<UIViewController> popViewController(Animated animated = Animated::no);
    // What was above the root, lowest first.
    std::vector<std::shared_ptr<UIViewController>> popToRootViewController(Animated animated = Animated::no);
    // Called when the stack has changed, whoever did it.
    std::function<void()> onStackChange;

    const std::shared_ptr<UINavigationBar>& navigationBar() const { return bar_; }
    bool isNavigationBarHidden() const { return isBarHidden_; }
    void setNavigationBarHidden(bool hidden); // default: shown
    // The title of a page has changed.
    void updateNavigationBar();

    void loadView() override;
    void viewDidLoad() override;
    void viewWillLayoutSubviews() override;
    void viewSafeAreaInsetsDidChange() override;
    UIStatusBarStyle preferredStatusBarStyle() const override;

private:
    class StackView;
    CGRect pageFrame() const;
    bool isRightToLeft() const;
    void showTop();
    enum class Direction { deeper, back };
    void slide(std::shared_ptr<UIView> leaving, Direction direction);
    void finishSliding();

    // main thread only
    std::vector<std::shared_ptr<UIViewController>> stack_;
    std::shared_ptr<UINavigationBar> bar_;
    bool isBarHidden_ = false;
    std::shared_ptr<UIView> leaving_; // a picture of the page that slides out
    unsigned slides_ = 0;
};

} // namespace platform
