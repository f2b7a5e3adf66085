// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Animation.h"
#include "platform/swiftui/ModifiedContent.h"
#include "platform/swiftui/Transaction.h"

#include <concepts>
#include <functional>
#include <optional>
#include <utility>

namespace platform {

// What updates of the content do under another transaction than the one they came with; its own place is part of it.
class TransactionModifierNode : public ModifierNode {
public:
    using ModifierNode::ModifierNode;

protected:
    void arrange(CGRect rect, const ProposedSize& proposal) override;
    void updateAround(bool modifierChanged, const void* content) override;
};

// Animates what changes in the content in an update in which the described value is another one; no animation makes such
// changes at once.
template <std::equality_comparable Value>
struct AnimationModifier {
    std::optional<Animation> animation;
    Value value;
    class Node;
    bool operator==(const AnimationModifier&) const = default;
};

template <std::equality_comparable Value>
class AnimationModifier<Value>::Node : public TransactionModifierNode {
public:
    Node(const NodeContext& context, const AnimationModifier& modifier)
        : TransactionModifierNode(context)
        , value_(modifier.value)
    {
    }

protected:
    void updateModifier(const AnimationModifier& modifier)
    {
        if (modifier.value == value_)
            return;
        value_ = modifier.value;
        host().changeTransactionOnce(*this, [animation = modifier.animation](Transaction& transaction) {
            transaction.animation = animation;
        });
    }

private:
    Value value_;
};

template <std::equality_comparable Value>
auto animation(std::optional<Animation> animation, Value value)
{
    return AnimationModifier<Value>{animation, std::move(value)};
}

// Changes the transaction of every update of the content.
struct TransactionModifier {
    std::function<void(Transaction&)> change;
    class Node;
};

class TransactionModifier::Node : public TransactionModifierNode {
public:
    Node(const NodeContext& context, const TransactionModifier& modifier)
        : TransactionModifierNode(context)
    {
        updateModifier(modifier);
    }

protected:
    void updateModifier(const TransactionModifier& modifier)
    {
        host().setTransactionChange(*this, modifier.change);
    }
};

inline auto transaction(std::function<void(Transaction&)> change)
{
    return TransactionModifier{std::move(change)};
}

} // namespace platform
