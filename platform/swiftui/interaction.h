// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/GroupNode.h"
#include "platform/swiftui/environment.h"

namespace platform {

// --- Hit testing -----------------------------------------------------------------------------------

enum class HitTesting { disallowed, allowed };

// Whether touches reach the content; otherwise they go to what is behind it.
struct HitTestingModifier {
    HitTesting hitTesting = HitTesting::allowed;
    class Node;
    bool operator==(const HitTestingModifier&) const = default;
};

class HitTestingModifier::Node : public GroupNode {
public:
    Node(const NodeContext& context, const HitTestingModifier& modifier)
        : GroupNode(context)
    {
        updateModifier(modifier);
    }

protected:
    void updateModifier(const HitTestingModifier& modifier)
    {
        group().setUserInteractionEnabled(modifier.hitTesting == HitTesting::allowed);
    }
};

inline auto allowsHitTesting(HitTesting hitTesting)
{
    return HitTestingModifier{hitTesting};
}

// --- Enabled ---------------------------------------------------------------------------------------

// Whether controls and gestures of the content work. What is disabled around it stays so.
struct DisabledModifier {
    bool isDisabled = true;
    class Node;
    bool operator==(const DisabledModifier&) const = default;
};

class DisabledModifier::Node : public EnvironmentWritingModifier<IsEnabledKey>::Node {
    using Base = EnvironmentWritingModifier<IsEnabledKey>;

public:
    Node(const NodeContext& context, const DisabledModifier& modifier)
        : Base::Node(context, {false})
        , isDisabled_(modifier.isDisabled)
    {
        refresh();
    }
    void refresh() override
    {
        forgetSources();
        Base::Node::updateModifier({environment<IsEnabledKey>() && !isDisabled_});
    }

protected:
    void updateModifier(const DisabledModifier& modifier)
    {
        isDisabled_ = modifier.isDisabled;
        refresh();
    }

private:
    bool isDisabled_;
};

inline auto disabled(bool isDisabled = true)
{
    return DisabledModifier{isDisabled};
}

} // namespace platform
