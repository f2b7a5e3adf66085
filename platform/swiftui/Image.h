// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIImage.h"
#include "platform/swiftui/PlatformViewNode.h"
#include "platform/swiftui/View.h"

#include <memory>
#include <string>

namespace platform {

// A picture in its own size, or, resizable, stretched over all that is offered. Templates and symbols take the colour of
// the surroundings.
//
//     Image{photo}.resizable()
//     Image{.systemName = "play.fill"} | font(Font::title())
struct Image {
    UIImage image{};
    bool isResizable = false;
    // A symbol in place of the picture; see SymbolImage.h. It has the size and the weight of the text around it and stands on
    // its baseline. An unknown name draws nothing and takes no place.
    std::string systemName{};

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
    CGFloat guide(VerticalAlignment alignment, CGSize size) override;

protected:
    CGSize measure(const ProposedSize& proposal) override;

private:
    class ImageView;
    void show();

    Image record_;
    std::shared_ptr<ImageView> imageView_;
};

} // namespace platform
