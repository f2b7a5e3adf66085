// SPDX-License-Identifier: MIT
#include "platform/uikit/UIPopoverPresentationController.h"

#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIBezierPath.h"
#include "platform/uikit/UIView.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace platform {

namespace {

using Arrow = UIPopoverArrowDirection;

constexpr CGFloat bubbleRadius = 12;
constexpr CGSize sizeWithoutWish{320, 240};
constexpr double arrivalTime = 0.2, departureTime = 0.15, arrivalScale = 0.92; // seconds
constexpr CGFloat arrowBase = UIPopoverPresentationController::arrowBase;
constexpr CGFloat arrowLength = UIPopoverPresentationController::arrowLength;

UIColor bubbleColor()
{
    return UIColor::dynamic(UIColor::gray(1), UIColor::gray(0.17));
}

bool isVertical(Arrow arrow)
{
    return arrow.rawValue == Arrow::up || arrow.rawValue == Arrow::down;
}

// What the bubble leaves for its content.
UIEdgeInsets arrowInsets(Arrow arrow)
{
    UIEdgeInsets insets;
    (arrow.rawValue == Arrow::up         ? insets.top
         : arrow.rawValue == Arrow::down ? insets.bottom
         : arrow.rawValue == Arrow::left ? insets.left
                                         : insets.right) = arrowLength;
    return insets;
}

// The body with its arrow, which points out of the middle of `center` along the arrow's edge.
UIBezierPath bubblePath(CGRect all, Arrow arrow, CGFloat center)
{
    auto body = all.inset(arrowInsets(arrow));
    auto path = UIBezierPath::roundedRect(body, bubbleRadius);
    // Along the edge and away from it.
    auto at = [&](CGFloat along, CGFloat away) -> CGPoint {
        switch (arrow.rawValue) {
        case Arrow::up:
            return {all.minX() + along, body.minY() - away};
        case Arrow::down:
            return {all.minX() + along, body.maxY() + away};
        case Arrow::left:
            return {body.minX() - away, all.minY() + along};
        default:
            return {body.maxX() + away, all.minY() + along};
        }
    };
    constexpr CGFloat half = arrowBase / 2, tip = 3; // how far the tip is rounded
    // A hair inside of the body, so that no seam is seen.
    path.moveTo(at(center - half, -1));
    path.addLine(at(center - half, 0));
    path.addLine(at(center - tip, arrowLength - tip));
    path.addQuad(at(center + tip, arrowLength - tip), at(center, arrowLength));
    path.addLine(at(center + half, 0));
    path.addLine(at(center + half, -1));
    path.close();
    return path;
}

} // namespace

// The bubble, and in it the presented controller's view.
class UIPopoverPresentationController::Bubble : public UIView {
public:
    explicit Bubble(std::shared_ptr<UIView> content)
        : content_(std::move(content))
    {
        addSubview(content_);
        setShadow(UIViewShadow{.opacity = 0.22, .radius = 12, .offset = {0, 4}});
    }
    void point(Arrow arrow, CGFloat center)
    {
        if (arrow_ == arrow && center_ == center)
            return;
        arrow_ = arrow;
        center_ = center;
        setNeedsLayout();
        setNeedsDisplay();
    }
    Arrow arrow() const { return arrow_; }
    void layoutSubviews() override
    {
        UIView::layoutSubviews();
        auto body = bounds().inset(arrowInsets(arrow_));
        content_->setFrame(body.isNull() ? CGRect{} : body);
        setNeedsDisplay();
    }
    // The corners beside the arrow are not the popover's.
    bool pointInside(CGPoint point) const override
    {
        return bounds().inset(arrowInsets(arrow_)).contains(point);
    }
    void draw(CGContext& context, CGRect) override
    {
        auto path = bubblePath(bounds(), arrow_, center_);
        context.fill(path, bubbleColor());
    }

private:
    const std::shared_ptr<UIView> content_;
    Arrow arrow_{Arrow::up};
    CGFloat center_ = 0;
};

UIPopoverPresentationController::UIPopoverPresentationController(std::shared_ptr<UIViewController> presented,
                                                                 std::weak_ptr<UIViewController> presenting)
    : UIPresentationController(std::move(presented), std::move(presenting))
{
}

UIPopoverPresentationController::~UIPopoverPresentationController() = default;

void UIPopoverPresentationController::setSourceView(const std::shared_ptr<UIView>& view)
{
    sourceView_ = view;
    relayout();
}

void UIPopoverPresentationController::setSourceRect(std::optional<CGRect> rect)
{
    if (sourceRect_ == rect)
        return;
    sourceRect_ = rect;
    relayout();
}

void UIPopoverPresentationController::setPermittedArrowDirections(UIPopoverArrowDirection directions)
{
    permitted_ = directions.rawValue & Arrow::any ? directions : Arrow{Arrow::any};
    relayout();
}

void UIPopoverPresentationController::relayout()
{
    if (auto container = containerView())
        container->setNeedsLayout();
}

UIPopoverArrowDirection UIPopoverPresentationController::arrowDirection() const
{
    return placement().arrow;
}

std::shared_ptr<UIView> UIPopoverPresentationController::presentedView() const
{
    if (!bubble_)
        bubble_ = std::make_shared<Bubble>(presentedViewController()->view());
    return bubble_;
}

bool UIPopoverPresentationController::escapePressed()
{
    dismissByUser();
    return true; // nobody behind gets it
}

CGRect UIPopoverPresentationController::anchor() const
{
    auto container = containerView();
    auto view = sourceView_.lock();
    if (view && container && view->window() && view->window() == container->window()) {
        auto rect = container->convertFrom(sourceRect_.value_or(view->bounds()), view.get());
        if (!rect.isNull() && std::isfinite(rect.maxX()) && std::isfinite(rect.maxY()))
            lastAnchor_ = rect;
    }
    if (!lastAnchor_.isNull() || !container)
        return lastAnchor_;
    return {container->bounds().center(), {}};
}

CGSize UIPopoverPresentationController::contentSize(CGSize room) const
{
    auto wish = presentedViewController()->preferredContentSize();
    if (wish == CGSize{})
        wish = presentedViewController()->view()->sizeThatFits(room);
    if (!(wish.width > 0) || !(wish.height > 0))
        wish = sizeWithoutWish;
    return {std::min(wish.width, room.width), std::min(wish.height, room.height)};
}

UIPopoverPresentationController::Placement UIPopoverPresentationController::placement() const
{
    auto container = containerView();
    if (!container)
        return {{}, {Arrow::up}, 0};
    auto room = container->bounds().inset(container->safeAreaInsets()).insetBy(margin, margin);
    if (room.isEmpty())
        room = container->bounds();
    auto target = anchor();
    // Of an anchor outside of the window, the nearest place inside.
    auto x = std::clamp(target.minX(), room.minX(), room.maxX());
    auto y = std::clamp(target.minY(), room.minY(), room.maxY());
    target = CGRect::make(x, y, std::clamp(target.maxX(), x, room.maxX()) - x,
                          std::clamp(target.maxY(), y, room.maxY()) - y);
    auto content = contentSize(room.size);

    auto isRightToLeft =
        container->effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    std::array<unsigned, 4> order{Arrow::up, Arrow::down, Arrow::left, Arrow::right};
    if (isRightToLeft)
        std::swap(order[2], order[3]);
    auto space = [&](unsigned arrow) {
        return (arrow == Arrow::up         ? room.maxY() - target.maxY()
                    : arrow == Arrow::down ? target.minY() - room.minY()
                    : arrow == Arrow::left ? room.maxX() - target.maxX()
                                           : target.minX() - room.minX())
            - arrowLength;
    };
    // The first side with room for all of it, else the one that has the largest part.
    Arrow chosen;
    auto best = -1.0;
    for (auto arrow : order) {
        if (!permitted_.contains(arrow))
            continue;
        auto wanted = isVertical({arrow}) ? content.height : content.width;
        auto part = wanted > 0 ? std::clamp(space(arrow) / wanted, 0.0, 1.0) : 1;
        if (part > best) {
            best = part;
            chosen = {arrow};
        }
    }
    auto along = isVertical(chosen) ? content.width : content.height;
    auto away =
        std::max(std::min(isVertical(chosen) ? content.height : content.width, space(chosen.rawValue)), 0.0)
        + arrowLength;
    auto middle = isVertical(chosen) ? target.midX() : target.midY();
    auto low = isVertical(chosen) ? room.minX() : room.minY();
    auto high = (isVertical(chosen) ? room.maxX() : room.maxY()) - along;
    auto start = std::round(std::clamp(middle - along / 2, low, std::max(low, high)));
    constexpr CGFloat corner = bubbleRadius + arrowBase / 2;
    auto center = along > 2 * corner ? std::clamp(middle - start, corner, along - corner) : along / 2;
    auto frame = chosen.rawValue == Arrow::up ? CGRect::make(start, target.maxY(), along, away)
        : chosen.rawValue == Arrow::down      ? CGRect::make(start, target.minY() - away, along, away)
        : chosen.rawValue == Arrow::left      ? CGRect::make(target.maxX(), start, away, along)
                                              : CGRect::make(target.minX() - away, start, away, along);
    return {frame, chosen, center};
}

CGRect UIPopoverPresentationController::frameOfPresentedViewInContainerView() const
{
    return placement().frame;
}

void UIPopoverPresentationController::containerViewWillLayoutSubviews()
{
    presentedView(); // made by now
    auto content = presentedViewController()->view();
    content->setCornerRadius(bubbleRadius);
    content->setMaskedCorners(UIRectCorner::allCorners);
    content->setClipsToBounds(true);
    auto placed = placement();
    bubble_->point(placed.arrow, placed.arrowCenter);
}

void UIPopoverPresentationController::place(UIView& view, Stage stage) const
{
    auto isOutside = stage == Stage::outside;
    view.setAlpha(isOutside ? 0 : 1);
    auto grows = isOutside && !isMotionReduced() && !presentedViewController()->isBeingDismissed();
    view.setTransform(grows ? CGAffineTransform::scale(arrivalScale, arrivalScale) : CGAffineTransform{});
}

AnimationTiming UIPopoverPresentationController::transitionTiming(Stage towards) const
{
    return AnimationTiming::easeOut(towards == Stage::shown ? arrivalTime : departureTime);
}

} // namespace platform
