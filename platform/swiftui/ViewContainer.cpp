// SPDX-License-Identifier: MIT
#include "platform/swiftui/ViewContainer.h"

#include "platform/swiftui/ViewHost.h"
#include "platform/uikit/UIView.h"

#include <algorithm>
#include <utility>

namespace platform {

ViewContainer::~ViewContainer()
{
    if (host_)
        host_->forget(*this);
}

void ViewContainer::contentsDidChange()
{
    if (!host_ || std::exchange(isDirty_, true))
        return;
    host_->addDirty(*this);
}

void ViewContainer::syncSubviews()
{
    isDirty_ = false;
    std::vector<std::shared_ptr<UIView>> views;
    appendContents(views);
    views.insert(views.end(), leaving_.begin(), leaving_.end());
    containerView().setSubviews(views);
}

void ViewContainer::addLeaving(std::shared_ptr<UIView> view)
{
    leaving_.push_back(std::move(view));
    contentsDidChange();
}

void ViewContainer::removeLeaving(const UIView& view)
{
    std::erase_if(leaving_, [&](auto& each) { return each.get() == &view; });
    contentsDidChange();
}

} // namespace platform
