// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIPresentationController.h"

namespace platform {

class UIPanGestureRecognizer;

// A presentation as a sheet: a card in the middle of a wide window, all but the upper edge of a narrow one. The user
// ends it by pressing beside it, by Escape, or by drawing it down: with a finger anywhere where nothing scrolls up, with
// the mouse at its upper edge. Main thread only.
class UISheetPresentationController : public UIPresentationController {
public:
    explicit UISheetPresentationController(std::shared_ptr<UIViewController> presented,
                                           std::weak_ptr<UIViewController> presenting = {});
    ~UISheetPresentationController() override;

    static constexpr CGFloat minimumCardWidth = 600; // points; a narrower window is filled

    CGRect frameOfPresentedViewInContainerView() const override;
    bool dimsBackground() const override { return true; }
    bool shouldRemovePresentersView() const override { return false; }
    void containerViewWillLayoutSubviews() override;
    void presentationTransitionWillBegin() override;
    void dismissalTransitionDidEnd() override;
    void backgroundPressed() override { dismissByUser(); }
    bool escapePressed() override;

private:
    bool fillsWidth() const;
    std::shared_ptr<UIPanGestureRecognizer> makePan(bool isForFingers);
    void handlePan(UIPanGestureRecognizer& pan);
    void drawDown(CGFloat way);
    void settleBack();

    // main thread only
    CGFloat dragStart_ = 0; // how far down the sheet was when it was taken
    std::shared_ptr<UIPanGestureRecognizer> fingerPan_, mousePan_;
};

} // namespace platform
