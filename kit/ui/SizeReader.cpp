// SPDX-License-Identifier: MIT
#include "kit/ui/SizeReader.h"

#include "platform/swiftui/ViewHost.h"

namespace zelk {

void SizeReader::Node::arrange(platform::CGRect rect, const platform::ProposedSize& proposal)
{
    ModifierNode::arrange(rect, proposal);
    if (told_ == rect.size)
        return;
    told_ = rect.size;
    // Not in the middle of the layout, which the action may change.
    host().performAfterSync([size = rect.size, place = std::weak_ptr(reader_)] {
        auto reader = place.lock();
        if (auto action = reader ? reader->onChange : nullptr)
            action(size);
    });
}

} // namespace zelk
