// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Forward.h"
#include "platform/uikit/Forward.h"

#include <memory>
#include <vector>

namespace platform {

// A platform view whose subviews are those of a part of the node tree, in its order: the host's own view, a
// scroll view's content, a group that is faded or masked as a whole. Main thread only.
class ViewContainer {
public:
    explicit ViewContainer(ViewHost& host)
        : host_(&host)
    {
    }
    virtual ~ViewContainer();
    // The host holds its address while its subviews are out of date.
    ViewContainer(const ViewContainer&) = delete;
    ViewContainer& operator=(const ViewContainer&) = delete;

    virtual UIView& containerView() const = 0;
    virtual void appendContents(std::vector<std::shared_ptr<UIView>>& views) const = 0;

    // Nodes came or went below: the subviews are put in order before the next layout.
    void contentsDidChange();
    // Puts the subviews in the order of the tree; those on their way out stay, in front.
    void syncSubviews();
    // A view that left the tree but stays until its transition is over.
    void addLeaving(std::shared_ptr<UIView> view);
    void removeLeaving(const UIView& view);

protected:
    // For the host, which goes before the container that it is.
    void letGoOfHost() { host_ = nullptr; }

private:
    ViewHost* host_;
    std::vector<std::shared_ptr<UIView>> leaving_;
    bool isDirty_ = false;
};

} // namespace platform
