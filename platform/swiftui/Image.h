// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIImage.h"
#include "platform/swiftui/PlatformViewNode.h"
#include "platform/swiftui/View.h"

#include <memory>

namespace platform {

class UIImageView;

// A picture in its own size, or, resizable, stretched over all that is offered. Templates and symbols take the colour of
// the surroundings.
struct Image {
    UIImage image;
    bool isResizable = false;

    Image resizable() const
    {
        auto changed = *this;
        changed.isResizable = true;
        return changed;
    }

    class Node;
    bool operator==(const Image&) const = default;
};

class Image::Node final : public PlatformViewNode {
public:
    Node(const NodeContext& context, const Image& view);
    void update(const Image& view);
    void refresh() override;
    bool isRigid(Axis) const override { return !record_.isResizable; }

protected:
    CGSize measure(const ProposedSize& proposal) override;

private:
    Image record_;
    std::shared_ptr<UIImageView> imageView_;
};

} // namespace platform
