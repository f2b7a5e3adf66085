// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/GroupNode.h"

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace platform {

// --- Being told ------------------------------------------------------------------------------------

// Calls the action when the pointer comes over the content, and when it leaves.
struct HoverModifier {
    std::function<void(bool isOver)> action;
    class Node;
};

class HoverModifier::Node : public GroupNode {
public:
    Node(const NodeContext& context, const HoverModifier& modifier);
    ~Node() override;

protected:
    void updateModifier(const HoverModifier& modifier);

private:
    class Group;
    std::shared_ptr<Group> hovered_;
    Node(const NodeContext& context, std::shared_ptr<Group> group);
};

inline auto onHover(std::function<void(bool isOver)> action)
{
    return HoverModifier{std::move(action)};
}

// --- Being seen ------------------------------------------------------------------------------------

enum class HoverEffect {
    automatic, // highlight
    highlight, // a soft ground behind the content
    lift       // the content grows a little
};

// How enabled content looks while the pointer is over it.
struct HoverEffectModifier {
    HoverEffect effect = HoverEffect::automatic;
    class Node;
    bool operator==(const HoverEffectModifier&) const = default;
};

class HoverEffectModifier::Node : public GroupNode {
public:
    Node(const NodeContext& context, const HoverEffectModifier& modifier);
    void appendContents(std::vector<std::shared_ptr<UIView>>& views) const override;
    void refresh() override;

protected:
    void updateModifier(const HoverEffectModifier& modifier);
    void arrange(CGRect rect, const ProposedSize& proposal) override;

private:
    class Group;
    Node(const NodeContext& context, const HoverEffectModifier& modifier, std::shared_ptr<Group> group);
    std::shared_ptr<Group> hovered_;
};

inline auto hoverEffect(HoverEffect effect = HoverEffect::automatic)
{
    return HoverEffectModifier{effect};
}

} // namespace platform
