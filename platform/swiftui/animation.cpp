// SPDX-License-Identifier: MIT
#include "platform/swiftui/animation.h"

namespace platform {

void TransactionModifierNode::arrange(CGRect rect, const ProposedSize& proposal)
{
    host().performInTransaction(*this, [&] { ModifierNode::arrange(rect, proposal); });
}

void TransactionModifierNode::updateAround(const std::function<void()>& modifier,
                                           const std::function<void()>& content)
{
    modifier();
    host().performInTransaction(*this, content);
}

} // namespace platform
