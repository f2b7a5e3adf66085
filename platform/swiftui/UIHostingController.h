// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/UIHostingControllerBase.h"
#include "platform/swiftui/View.h"

#include <utility>

namespace platform {

// A view controller whose view shows a declarative view, in the safe area. Works in any place a controller does, also
// when its view is inserted before the controller becomes a child. Main thread only.
template <View Root>
class UIHostingController : public UIHostingControllerBase {
public:
    explicit UIHostingController(Root rootView)
        : rootView_(std::move(rootView))
    {
    }

    const Root& rootView() const { return rootView_; }
    // A new description of the same place: state stays.
    void setRootView(Root rootView)
    {
        rootView_ = std::move(rootView);
        if (auto* node = host().root()) {
            updateNode(*node, rootView_);
            flush();
        }
    }

protected:
    std::unique_ptr<ViewNode> makeRootNode(const NodeContext& context) override
    {
        return makeNode(context, rootView_);
    }

private:
    Root rootView_;
};

} // namespace platform
