// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ModifiedContent.h"

#include <functional>

namespace platform {

// A node that acts when it comes on screen and when it is gone. It appears after the first layout of a host that is on
// screen, outer nodes before inner ones, earlier siblings before later ones; it disappears at the end of the update that
// removed it (after its transition, if it has one), or when the host leaves the screen, and may appear again with the host.
// Main thread only.
class AppearanceNode : public ModifierNode {
public:
    explicit AppearanceNode(const NodeContext& context);
    ~AppearanceNode() override;
    void appendLayoutNodes(std::vector<ViewNode*>& nodes) override { child().appendLayoutNodes(nodes); }

    // For the host.
    void hostWillAppear();
    void hostDidDisappear();

protected:
    // Either may remove this node.
    std::function<void()> onAppear_, onDisappear_;
    bool hasAppeared() const { return hasAppeared_; }

private:
    void waitForAppearance();
    bool hasAppeared_ = false;
};

} // namespace platform
