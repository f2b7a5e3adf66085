// SPDX-License-Identifier: MIT
#include "platform/swiftui/alignedRect.h"

#include "platform/swiftui/EnvironmentValues.h"
#include "platform/swiftui/ViewNode.h"

namespace platform {

CGRect alignedRect(ViewNode& reader, ViewNode& node, CGSize size, Alignment alignment, CGRect rect)
{
    CGFloat x = 0;
    switch (alignment.horizontal) {
    case HorizontalAlignment::leading:
        break;
    case HorizontalAlignment::center:
        x = (rect.size.width - size.width) / 2;
        break;
    case HorizontalAlignment::trailing:
        x = rect.size.width - size.width;
        break;
    }
    if (reader.environment<LayoutDirectionKey>() == LayoutDirection::rightToLeft)
        x = rect.size.width - size.width - x;

    CGFloat y = 0;
    switch (alignment.vertical) {
    case VerticalAlignment::top:
        break;
    case VerticalAlignment::center:
        y = (rect.size.height - size.height) / 2;
        break;
    case VerticalAlignment::bottom:
        y = rect.size.height - size.height;
        break;
    case VerticalAlignment::firstTextBaseline:
    case VerticalAlignment::lastTextBaseline:
        // The guide of the place is its bottom edge, as of any view without text.
        y = rect.size.height - node.guide(alignment.vertical, size);
        break;
    }
    return CGRect::make(rect.origin.x + x, rect.origin.y + y, size.width, size.height);
}

} // namespace platform
