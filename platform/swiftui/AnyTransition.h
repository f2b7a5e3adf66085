// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"
#include "platform/swiftui/Edge.h"
#include "platform/swiftui/UnitPoint.h"

#include <vector>

namespace platform {

// How a view looks before it has come and after it has gone, as a value.
class AnyTransition {
public:
    // What is seen at the far end; the resting view is the default.
    struct Effect {
        double opacity = 1;
        CGSize scale{1, 1};
        UnitPoint anchor = UnitPoint::center();
        CGVector offset;
        std::vector<Edge> edges; // moved by its own length towards each
        bool operator==(const Effect&) const = default;
    };

    static AnyTransition identity() { return AnyTransition({}, {}); }
    static AnyTransition opacity() { return symmetric({.opacity = 0}); }
    static AnyTransition scale(CGFloat factor = 0, UnitPoint anchor = UnitPoint::center())
    {
        return symmetric({.scale = {factor, factor}, .anchor = anchor});
    }
    static AnyTransition offset(CGVector by) { return symmetric({.offset = by}); }
    // From that edge and back to it.
    static AnyTransition move(Edge edge) { return symmetric({.edges = {edge}}); }
    // In from the leading edge and out to the trailing one.
    static AnyTransition slide()
    {
        return AnyTransition({.edges = {Edge::leading}}, {.edges = {Edge::trailing}});
    }
    static AnyTransition asymmetric(const AnyTransition& insertion, const AnyTransition& removal)
    {
        return AnyTransition(insertion.insertion_, removal.removal_);
    }
    // Both at once; where both scale, the other's anchor counts.
    AnyTransition combined(const AnyTransition& other) const;

    const Effect& insertion() const { return insertion_; }
    const Effect& removal() const { return removal_; }
    bool operator==(const AnyTransition&) const = default;

private:
    AnyTransition(Effect insertion, Effect removal);
    static AnyTransition symmetric(const Effect& effect) { return AnyTransition(effect, effect); }

    Effect insertion_, removal_;
};

} // namespace platform
