// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIPresentationController.h"

#include <optional>

namespace platform {

// Where the arrow of a popover stands, seen from the popover; an option set.
struct UIPopoverArrowDirection {
    unsigned rawValue = 0;
    static constexpr unsigned up = 1, down = 2, left = 4, right = 8, any = 15;
    bool contains(unsigned flags) const { return (rawValue & flags) == flags; }
    bool operator==(const UIPopoverArrowDirection&) const = default;
};

// A presentation in a bubble that points at what it belongs to. It stands below its anchor where there is room, else
// above, else beside it, always inside of the window, and is as large as its controller's preferred size or, without
// one, as its view wants to be. Pressing beside it and Escape end it. Main thread only.
class UIPopoverPresentationController : public UIPresentationController {
public:
    explicit UIPopoverPresentationController(std::shared_ptr<UIViewController> presented,
                                             std::weak_ptr<UIViewController> presenting = {});
    ~UIPopoverPresentationController() override;

    // The anchor, in the view's coordinates: without a rectangle all of the view, without a view the window's middle. When
    // the view leaves the window the popover stays where it is.
    std::shared_ptr<UIView> sourceView() const { return sourceView_.lock(); }
    void setSourceView(const std::shared_ptr<UIView>& view);
    std::optional<CGRect> sourceRect() const { return sourceRect_; }
    void setSourceRect(std::optional<CGRect> rect);
    UIPopoverArrowDirection permittedArrowDirections() const { return permitted_; }
    void setPermittedArrowDirections(UIPopoverArrowDirection directions); // default any; none counts as any
    // As it is placed now.
    UIPopoverArrowDirection arrowDirection() const;

    static constexpr CGFloat arrowLength = 10, arrowBase = 22, margin = 8; // points

    std::shared_ptr<UIView> presentedView() const override;
    CGRect frameOfPresentedViewInContainerView() const override;
    bool shouldRemovePresentersView() const override { return false; }
    bool dimsBackground() const override { return false; }
    void containerViewWillLayoutSubviews() override;
    void backgroundPressed() override { dismissByUser(); }
    bool escapePressed() override;

protected:
    void place(UIView& presentedView, Stage stage) const override;
    AnimationTiming transitionTiming(Stage towards) const override;

private:
    class Bubble;
    struct Placement {
        CGRect frame; // of the bubble with its arrow, in the container
        UIPopoverArrowDirection arrow;
        CGFloat arrowCenter = 0; // along the bubble's edge, in its coordinates
    };
    CGRect anchor() const; // in the container
    CGSize contentSize(CGSize room) const;
    Placement placement() const;
    void relayout();

    // main thread only
    std::weak_ptr<UIView> sourceView_;
    std::optional<CGRect> sourceRect_;
    UIPopoverArrowDirection permitted_{UIPopoverArrowDirection::any};
    mutable CGRect lastAnchor_ = CGRect::null();
    mutable std::shared_ptr<Bubble> bubble_;
};

} // namespace platform
