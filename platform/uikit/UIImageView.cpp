// SPDX-License-Identifier: MIT
#include "platform/uikit/UIImageView.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGContext.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

CGRect contentRect(UIViewContentMode mode, CGSize size, CGRect bounds)
{
    using enum UIViewContentMode;
    if (mode == scaleToFill || mode == redraw)
        return bounds;
    auto hasArea =
        size.width > 0 && size.height > 0 && std::isfinite(size.width) && std::isfinite(size.height);
    if (hasArea && (mode == scaleAspectFit || mode == scaleAspectFill)) {
        auto x = bounds.width() / size.width, y = bounds.height() / size.height;
        auto factor = mode == scaleAspectFit ? std::min(x, y) : std::max(x, y);
        size = {size.width * factor, size.height * factor};
    }
    auto isLeft = mode == left || mode == topLeft || mode == bottomLeft;
    auto isRight = mode == right || mode == topRight || mode == bottomRight;
    auto isTop = mode == top || mode == topLeft || mode == topRight;
    auto isBottom = mode == bottom || mode == bottomLeft || mode == bottomRight;
    auto place = [](CGFloat start, CGFloat space, CGFloat length, bool atStart, bool atEnd) {
        return atStart ? start : atEnd ? start + space - length : start + (space - length) / 2;
    };
    return CGRect::make(place(bounds.minX(), bounds.width(), size.width, isLeft, isRight),
                        place(bounds.minY(), bounds.height(), size.height, isTop, isBottom), size.width,
                        size.height);
}

UIImageView::UIImageView()
{
    setUserInteractionEnabled(false);
}

UIImageView::UIImageView(UIImage image)
    : UIView({{}, image.size()})
    , image_(std::move(image))
{
    setUserInteractionEnabled(false);
}

void UIImageView::setImage(UIImage image)
{
    assertOnMainThread();
    auto changesSize = image_.size() != image.size();
    image_ = std::move(image);
    setNeedsDisplay();
    if (changesSize)
        invalidateIntrinsicContentSize();
}

void UIImageView::setContentMode(UIViewContentMode mode)
{
    assertOnMainThread();
    if (std::exchange(contentMode_, mode) != mode)
        setNeedsDisplay();
}

void UIImageView::draw(CGContext& context, CGRect)
{
    if (!image_.isEmpty())
        context.drawImage(image_, contentRect(contentMode_, image_.size(), presentationBounds()),
                          tintColor());
}

CGSize UIImageView::intrinsicContentSize() const
{
    return image_.isEmpty() ? UIView::intrinsicContentSize() : image_.size();
}

CGSize UIImageView::sizeThatFits(CGSize) const
{
    return image_.size();
}

void UIImageView::tintColorDidChange()
{
    if (image_.isTemplate())
        setNeedsDisplay();
}

// A picture without a description is decoration.
AccessibilityProperties UIImageView::accessibilityNow() const
{
    auto properties = UIView::accessibilityNow();
    if (properties.role == AccessibilityRole::none && !properties.label.empty())
        properties.role = AccessibilityRole::image;
    return properties;
}

} // namespace platform
