// SPDX-License-Identifier: MIT
#include "platform/swiftui/GeometryReader.h"

#include "platform/swiftui/alignedRect.h"
#include "platform/uikit/UIView.h"

namespace platform {

void GeometryNode::refresh()
{
    isOutOfDate_ = true;
    invalidateLayout();
}

void GeometryNode::arrange(CGRect rect, const ProposedSize&)
{
    GeometryProxy proxy{rect.size, container().containerView().convertTo(rect, nullptr)};
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
