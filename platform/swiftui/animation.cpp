// SPDX-License-Identifier: MIT
#include "platform/swiftui/animation.h"

namespace platform {

void TransactionModifierNode::arrange(CGRect rect, const ProposedSize& proposal)
{
    host().performInTransaction(*this, [&] { ModifierNode::arrange(rect, proposal); });
}

void TransactionModifierNode::updateAround(bool modifierChanged, const void* content)
{
    if (modifierChanged)
        applyModifier();
    host().performInTransaction(*this, [&] { applyContent(content); });
}

} // namespace platform
