// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ModifiedContent.h"

#include <concepts>
#include <functional>
#include <memory>
#include <utility>

namespace platform {

// Calls `action(before, now)` at the end of each update in which the described value was another one than before. The value
// that the view is mounted with is no change.
template <std::equality_comparable Value>
struct ChangeModifier {
    Value value;
    std::function<void(const Value& before, const Value& now)> action;
    class Node;
};

template <std::equality_comparable Value>
class ChangeModifier<Value>::Node : public ModifierNode {
public:
    Node(const NodeContext& context, const ChangeModifier& modifier)
        : ModifierNode(context)
        , value_(modifier.value)
    {
    }
    void appendLayoutNodes(std::vector<ViewNode*>& nodes) override { child().appendLayoutNodes(nodes); }

protected:
    void updateModifier(const ChangeModifier& modifier)
    {
        if (modifier.value == value_)
            return;
        auto before = std::exchange(value_, modifier.value);
        host().performAfterFlush([action = modifier.action, before = std::move(before), now = value_,
                                  isMounted = std::weak_ptr(alive_)] {
            if (isMounted.lock())
                action(before, now);
        });
    }

private:
    Value value_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

template <std::equality_comparable Value, std::invocable<const Value&, const Value&> Action>
auto onChange(Value value, Action action)
{
    return ChangeModifier<Value>{std::move(value), std::move(action)};
}
template <std::equality_comparable Value, std::invocable<> Action>
auto onChange(Value value, Action action)
{
    return ChangeModifier<Value>{std::move(value),
                                 [action = std::move(action)](const Value&, const Value&) { action(); }};
}

} // namespace platform
