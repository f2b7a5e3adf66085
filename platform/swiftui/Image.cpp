// SPDX-License-Identifier: MIT
#include "platform/swiftui/Image.h"

#include "platform/swiftui/EnvironmentValues.h"
#include "platform/uikit/UIImageView.h"

namespace platform {

Image::Node::Node(const NodeContext& context, const Image& view)
    : PlatformViewNode(context)
    , record_(view)
    , imageView_(std::make_shared<UIImageView>(view.image))
{
    imageView_->setTintColor(environment<ForegroundColorKey>());
    setPlatformView(imageView_);
}

void Image::Node::update(const Image& view)
{
    if (view == record_)
        return;
    auto changesSize = view.isResizable != record_.isResizable || view.image.size() != record_.image.size();
    record_ = view;
    imageView_->setImage(view.image);
    if (changesSize)
        invalidateLayout();
}

void Image::Node::refresh()
{
    imageView_->setTintColor(environment<ForegroundColorKey>());
}

CGSize Image::Node::measure(const ProposedSize& proposal)
{
    auto natural = record_.image.size();
    return record_.isResizable ? proposal.replacingUnspecified(natural) : natural;
}

} // namespace platform
