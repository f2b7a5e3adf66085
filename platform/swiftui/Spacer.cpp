// SPDX-License-Identifier: MIT
#include "platform/swiftui/Spacer.h"

#include <algorithm>

namespace platform {

void Spacer::Node::update(const Spacer& spacer)
{
    if (spacer == spacer_)
        return;
    spacer_ = spacer;
    invalidateLayout();
}

void Spacer::Node::setStackAxis(std::optional<Axis> axis)
{
    if (axis == stackAxis_)
        return;
    stackAxis_ = axis;
    invalidateLayout();
}

CGSize Spacer::Node::measure(const ProposedSize& proposal)
{
    constexpr CGFloat defaultLength = 8;
    auto minimum = usableLength(spacer_.minLength.value_or(defaultLength));
    auto along = [&](std::optional<CGFloat> offered) { return std::max(minimum, offered.value_or(minimum)); };
    if (!stackAxis_)
        return {along(proposal.width), along(proposal.height)};
    return *stackAxis_ == Axis::horizontal ? CGSize{along(proposal.width), 0}
                                           : CGSize{0, along(proposal.height)};
}

} // namespace platform
