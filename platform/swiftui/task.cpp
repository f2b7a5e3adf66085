// SPDX-License-Identifier: MIT
#include "platform/swiftui/task.h"

namespace platform {

TaskNode::TaskNode(const NodeContext& context)
    : AppearanceNode(context)
{
    onAppear_ = [this] { start(); };
    onDisappear_ = [this] { source_.request_stop(); };
}

TaskNode::~TaskNode()
{
    onDisappear_ = nullptr; // would run when this is gone
    source_.request_stop();
}

void TaskNode::start()
{
    source_ = std::stop_source();
    auto token = source_.get_token();
    if (auto body = body_) // it may remove this
        body(std::move(token));
}

void TaskNode::restart()
{
    if (!hasAppeared())
        return; // starts when it appears
    source_.request_stop();
    host().performAfterFlush([this, isMounted = std::weak_ptr(alive_)] {
        if (isMounted.lock() && hasAppeared())
            start();
    });
}

} // namespace platform
