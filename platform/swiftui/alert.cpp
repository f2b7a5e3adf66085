// SPDX-License-Identifier: MIT
#include "platform/swiftui/alert.h"

#include "platform/swiftui/AlertPresenter.h"
#include "platform/swiftui/ViewHost.h"

namespace platform {

AlertNode::AlertNode(const NodeContext& context)
    : AppearanceNode(context)
    , presenter_(std::make_shared<AlertPresenter>(
          std::static_pointer_cast<UIViewController>(host().controller().weak_from_this().lock())))
    , isReplaced_(dynamic_cast<AlertNode*>(context.parent) != nullptr)
{
    onAppear_ = [this] { follow(); };
    onDisappear_ = [presenter = presenter_] { presenter->wantNothing(); };
}

AlertNode::~AlertNode()
{
    presenter_->wantNothing();
}

void AlertNode::want(bool isSame, std::function<AlertContent()> make, std::function<void()> clear)
{
    if (!isSame)
        ++identity_;
    wish_ = Wish{std::move(make), std::move(clear)};
    follow();
}

void AlertNode::wantNothing()
{
    wish_.reset();
    follow();
}

void AlertNode::follow()
{
    if (isReplaced_ || !hasAppeared())
        return; // it is looked at again when it appears
    if (wish_)
        presenter_->want(identity_, wish_->make, wish_->clear);
    else
        presenter_->wantNothing();
}

} // namespace platform
