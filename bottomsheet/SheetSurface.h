// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/GroupNode.h"

#include <functional>
#include <memory>

namespace bottomsheet {

class SheetView;

// Makes the content, at its place, a dialog: while it is presented keys, the focus and assistive technology stay inside of
// it, and Escape asks it to go. When it is away and has come to rest there, nothing of it is painted or found.
struct SheetSurface {
    bool isPresented = false;
    std::function<void()> handleEscape;
    class Node;
};

class SheetSurface::Node : public platform::GroupNode {
public:
    Node(const platform::NodeContext& context, const SheetSurface& surface);

protected:
    void updateModifier(const SheetSurface& surface);
    void arrange(platform::CGRect rect, const platform::ProposedSize& proposal) override;

private:
    Node(const platform::NodeContext& context, const SheetSurface& surface, std::shared_ptr<SheetView> view);
    const std::shared_ptr<SheetView> view_;
};

} // namespace bottomsheet
