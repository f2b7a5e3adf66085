// SPDX-License-Identifier: MIT
#include "platform/uikit/opaqueFrame.h"

#include "platform/graphics/RoundedRect.h"
#include "platform/uikit/OutlineMask.h"
#include "platform/uikit/UIView.h"

#include <limits>

namespace platform {

namespace {

// Grounds lie near the top of a tree, and have few brothers.
constexpr int deepest = 12;
constexpr std::size_t mostSubviews = 8;

CGFloat area(const CGRect& rect)
{
    return rect.isEmpty() ? 0 : rect.width() * rect.height();
}

// Only untouched views are understood.
bool isUpright(const UIView& view)
{
    return !view.isHidden() && view.presentationAlpha() >= 1 && view.presentationTransform().isIdentity();
}

CGPoint originOf(const UIView& view) // of its coordinates, in the superview's
{
    auto bounds = view.presentationBounds();
    auto center = view.presentationCenter();
    return {center.x - bounds.midX(), center.y - bounds.midY()};
}

CGRect roundedBounds(const UIView& view)
{
    auto bounds = view.presentationBounds();
    auto radius = view.presentationCornerRadius();
    return radius > 0 ? RoundedRect{bounds, radius, view.maskedCorners()}.middle() : bounds;
}

bool hasOpaqueBackground(const UIView& view)
{
    auto color = view.presentationBackgroundColor();
    return color && !color->patternImage()
        && color->components(view.traitCollection().colorAppearance()).alpha >= 1;
}

// Where the mask lets everything through.
CGRect openArea(const UIView& mask)
{
    auto* outline = dynamic_cast<const OutlineMask*>(&mask);
    if (!outline || !isUpright(mask) || mask.mask())
        return CGRect::null();
    auto shape = roundedRectOf(outline->outlineNow());
    auto origin = originOf(mask);
    return shape ? shape->middle().intersection(mask.presentationBounds()).offsetBy(origin.x, origin.y)
                 : CGRect::null();
}

// In the view's own coordinates.
CGRect opaqueArea(const UIView& view, const CGRect& dirty, int depth)
{
    auto limit = dirty;
    if (view.clipsToBounds())
        limit = limit.intersection(roundedBounds(view));
    if (view.mask())
        limit = limit.intersection(openArea(*view.mask()));
    if (limit.isEmpty())
        return CGRect::null();
    auto best = hasOpaqueBackground(view) ? roundedBounds(view).intersection(limit) : CGRect::null();
    if (depth == 0 || view.subviews().size() > mostSubviews)
        return best;
    for (const auto& subview : view.subviews()) {
        if (best.contains(limit))
            break;
        if (!isUpright(*subview))
            continue;
        auto origin = originOf(*subview);
        auto found = opaqueArea(*subview, limit.offsetBy(-origin.x, -origin.y), depth - 1)
                         .offsetBy(origin.x, origin.y);
        if (area(found) > area(best))
            best = found;
    }
    return best;
}

} // namespace

CGRect opaqueFrame(const UIView& view, CGRect dirty)
{
    if (!isUpright(view))
        return CGRect::null();
    auto origin = originOf(view);
    return opaqueArea(view, dirty.offsetBy(-origin.x, -origin.y), deepest).offsetBy(origin.x, origin.y);
}

} // namespace platform
