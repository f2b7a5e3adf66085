// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIContentSizeCategory.h"
#include "platform/swiftui/PlatformViewNode.h"
#include "platform/uikit/UIControl.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace platform {

// The node of a declarative control: a platform control that follows its surroundings (enabled, tint, direction, reduced
// motion through its window) and answers to the keyboard shortcut given to it. The subclass reads the surroundings in its
// constructor and in `refresh`, through readSurroundings().
class ControlNode : public PlatformViewNode {
public:
    using PlatformViewNode::PlatformViewNode;
    void refresh() final;

protected:
    // What the record and the surroundings say now; called at each refresh, after the sources are forgotten.
    virtual void readSources() = 0;
    void readSurroundings(UIView& view);
    void readSurroundings(UIControl& control);
    // What is as wide as there is room: the offer, the usual width where there is none, and never less than `least`.
    static CGSize wide(const ProposedSize& proposal, CGFloat usual, CGFloat least, CGFloat height);
    // The name that the record gives the control. One that accessibilityLabel gave it stays.
    void nameView(UIView& view, const std::string& label);

private:
    std::optional<std::pair<UIContentSizeCategory, double>> textSize_; // that it was last laid out with
    std::optional<UIColor> tint_;
    std::string name_;
};

} // namespace platform
