// SPDX-License-Identifier: MIT
#include "platform/swiftui/GeometryReader.h"

#include "platform/swiftui/ViewHost.h"
#include "platform/swiftui/alignedRect.h"
#include "platform/uikit/UIView.h"

namespace platform {

namespace {

// Where `rect`, in the hosting view's coordinates, reaches to the end of the safe area.
UIEdgeInsets safeAreaAround(const UIView& hosting, const CGRect& rect)
{
    constexpr CGFloat rounding = 0.5;
    auto insets = hosting.safeAreaInsets();
    auto safe = hosting.bounds().inset(insets);
    return {.top = rect.minY() <= safe.minY() + rounding ? insets.top : 0,
            .left = rect.minX() <= safe.minX() + rounding ? insets.left : 0,
            .bottom = rect.maxY() >= safe.maxY() - rounding ? insets.bottom : 0,
            .right = rect.maxX() >= safe.maxX() - rounding ? insets.right : 0};
}

} // namespace

void GeometryNode::refresh()
{
    isOutOfDate_ = true;
    invalidateLayout();
}

void GeometryNode::arrange(CGRect rect, const ProposedSize&)
{
    auto& view = container().containerView();
    GeometryProxy proxy{rect.size, view.convertTo(rect, nullptr)};
    auto hosting = host().controller().viewIfLoaded();
    if (hosting && view.isDescendant(*hosting))
        proxy.safeAreaInsets = safeAreaAround(*hosting, view.convertTo(rect, hosting.get()));
    else if (!described_)
        // Described during a layout, by another reader: the view is put into the tree after it. Looks again then.
        host().performAfterAppearing(*this, [this] { invalidateLayout(); });
    if (std::exchange(isOutOfDate_, false) || proxy != described_) {
        describe(proxy);
        described_ = proxy;
        // What changed below is measured anew before it is asked here.
        host().settleBelow(depth());
    }
    auto offer = ProposedSize::of(rect.size);
    child().place(alignedRect(*this, child(), child().sizeThatFits(offer), Alignment::topLeading(), rect),
                  offer);
}

} // namespace platform
