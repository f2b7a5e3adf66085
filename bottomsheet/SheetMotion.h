// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/animation.h"

namespace bottomsheet {

// How a sheet, or its backdrop, gets from where it is to where it belongs. It comes, goes, falls back and takes another
// height with the animation; under a finger it is where the finger is, unless it was caught in flight: then it comes to the finger from
// where it was.
struct SheetMotion {
    platform::Animation animation;
    bool isPresented = false;
    platform::CGFloat draggedOffset = 0;
    platform::CGFloat height = 0; // asked for
    class Node;
    bool operator==(const SheetMotion&) const = default;
};

class SheetMotion::Node : public platform::TransactionModifierNode {
public:
    Node(const platform::NodeContext& context, const SheetMotion& motion)
        : TransactionModifierNode(context)
        , motion_(motion)
    {
    }

protected:
    void updateModifier(const SheetMotion& motion);

private:
    bool isInFlight() const;
    SheetMotion motion_;
};

} // namespace bottomsheet
