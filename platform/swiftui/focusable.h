// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/GroupNode.h"
#include "platform/uikit/UIEvent.h"

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace platform {

class FocusRing;

// A group that can have the keyboard, and shows it by a ring.
class FocusGroup : public GroupView {
public:
    FocusGroup();
    ~FocusGroup() override;
    bool isFocusable = true;
    std::function<void(bool isFocused)> onFocusChange;
    // Keys that come while it, or what it holds, has the keyboard. True when taken.
    std::function<bool(const UIPress& press)> onKeyPress;
    const std::shared_ptr<FocusRing>& ring() const { return ring_; }

    bool canBecomeFirstResponder() const override { return isFocusable; }
    bool becomeFirstResponder() override;
    bool resignFirstResponder() override;
    bool pressesBegan(const UIPress& press) override;
    void layoutSubviews() override;

private:
    void focusChanged(bool isFocused);
    std::shared_ptr<FocusRing> ring_;
};

// The node of modifiers whose content can have the keyboard as a whole.
class FocusGroupNode : public GroupNode {
public:
    FocusGroupNode(const NodeContext& context, std::shared_ptr<FocusGroup> group);
    ~FocusGroupNode() override;
    void appendContents(std::vector<std::shared_ptr<UIView>>& views) const override;

protected:
    FocusGroup& focusGroup() const { return *focusGroup_; }
    void arrange(CGRect rect, const ProposedSize& proposal) override;

private:
    std::shared_ptr<FocusGroup> focusGroup_;
};

// The content can have the keyboard, while it is enabled; the action is told when it gets it and when it loses it.
struct FocusableModifier {
    bool isFocusable = true;
    std::function<void(bool isFocused)> onFocusChange;
    class Node;
};

class FocusableModifier::Node : public FocusGroupNode {
public:
    Node(const NodeContext& context, const FocusableModifier& modifier);
    void refresh() override;

protected:
    void updateModifier(const FocusableModifier& modifier);

private:
    bool isFocusable_ = true;
};

inline auto focusable(bool isFocusable = true, std::function<void(bool isFocused)> onFocusChange = {})
{
    return FocusableModifier{isFocusable, std::move(onFocusChange)};
}

// Offers the action the keys that come while the content has the keyboard and that nothing inside has taken; it says
// whether it took them.
struct KeyPressModifier {
    std::function<bool(const UIPress& press)> action;
    class Node;
};

class KeyPressModifier::Node : public FocusGroupNode {
public:
    Node(const NodeContext& context, const KeyPressModifier& modifier);

protected:
    void updateModifier(const KeyPressModifier& modifier) { focusGroup().onKeyPress = modifier.action; }
};

inline auto onKeyPress(std::function<bool(const UIPress& press)> action)
{
    return KeyPressModifier{std::move(action)};
}

} // namespace platform
