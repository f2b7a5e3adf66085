// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIViewController.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform {

class UIScrollView;

// A menu of titles of which one is chosen, in a popover. A click, Return or Space chooses; arrows, Home and End go along
// the rows; what is typed goes to the next title that begins so; Escape and a press beside choose nothing. Closes itself.
// Main thread only.
class ChoiceMenuController : public UIViewController {
public:
    // `selected`: the row with the mark, or none of them. `onChoice` comes once at most, before the menu has gone.
    ChoiceMenuController(std::vector<std::string> titles, int selected,
                         std::function<void(int index)> onChoice);
    ~ChoiceMenuController() override;

    // Shows it beside `source`, on behalf of the controller around that. False where there is none, or it presents already.
    static bool present(const std::shared_ptr<ChoiceMenuController>& menu, UIView& source,
                        std::function<void()> onClosed = {});

    void loadView() override;
    void viewDidLayoutSubviews() override;
    void viewDidAppear(Animated animated) override;
    void viewDidDisappear(Animated animated) override;

protected:
    std::shared_ptr<UIPresentationController>
    makePresentationController(const std::shared_ptr<UIViewController>& presenting) override;

private:
    class Row;
    void choose(int index);
    bool handleKey(const UIPress& press);
    void focus(int index);
    int focusedIndex() const;

    // fixed after construction
    const std::vector<std::string> titles_;
    const int selected_;
    // main thread only
    std::function<void(int)> onChoice_;
    std::function<void()> onClosed_;
    std::weak_ptr<UIView> source_;
    std::shared_ptr<UIScrollView> scroll_;
    std::vector<std::shared_ptr<Row>> rows_;
    CGFloat rowHeight_ = 0;
};

// The controller around a view that can present something; null in a window without one.
std::shared_ptr<UIViewController> controllerAround(const UIView& view);

} // namespace platform
