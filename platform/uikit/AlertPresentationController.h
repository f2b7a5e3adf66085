// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIPresentationController.h"

namespace platform {

class UIAlertController;

// How alerts come and go: in the middle of the window, from a little larger than they are; action sheets over its lower
// edge, from below. Main thread only.
class AlertPresentationController : public UIPresentationController {
public:
    AlertPresentationController(const std::shared_ptr<UIAlertController>& alert,
                                std::weak_ptr<UIViewController> presenting);

    CGRect frameOfPresentedViewInContainerView() const override;
    bool shouldRemovePresentersView() const override { return false; }
    bool dimsBackground() const override { return true; }
    void backgroundPressed() override;

protected:
    void place(UIView& card, Stage stage) const override;
    AnimationTiming transitionTiming(Stage towards) const override;

private:
    UIAlertController& alert() const;
    bool isSheet() const;
};

} // namespace platform
