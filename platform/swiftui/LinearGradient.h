// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/CGContext.h"
#include "platform/swiftui/AnimatableValues.h"
#include "platform/swiftui/PlatformViewNode.h"
#include "platform/swiftui/UnitPoint.h"
#include "platform/swiftui/View.h"

#include <memory>
#include <vector>

namespace platform {

// Colours that change along a line, over all that is offered. Stops in ascending order; without any nothing is painted.
// The line's ends and the stops' places move when they change in an animation; colours change at once.
struct LinearGradient {
    std::vector<GradientStop> stops;
    UnitPoint startPoint = UnitPoint::top();
    UnitPoint endPoint = UnitPoint::bottom();

    // Colours at equal distances.
    static LinearGradient ofColors(const std::vector<UIColor>& colors,
                                   UnitPoint startPoint = UnitPoint::top(),
                                   UnitPoint endPoint = UnitPoint::bottom());

    class Node;
    bool operator==(const LinearGradient&) const = default;
};

class LinearGradient::Node final : public PlatformViewNode {
public:
    Node(const NodeContext& context, const LinearGradient& view);
    ~Node() override;
    void update(const LinearGradient& view);

protected:
    CGSize measure(const ProposedSize& proposal) override { return proposal.replacingUnspecified(); }

private:
    class GradientView;
    std::shared_ptr<GradientView> gradientView_;
    LinearGradient record_;
    AnimatableValues places_; // start, end, then of each stop
};

} // namespace platform
