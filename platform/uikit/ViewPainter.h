// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/CGContext.h"
#include "platform/graphics/MaskedPicture.h"
#include "platform/uikit/PaintPieces.h"
#include "platform/uikit/UIView.h"

#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace platform {

// Paints a view tree back to front, as it is on screen now, and no more of it than shows in the dirty rectangle. Changes
// nothing in the tree. Main thread only.
class ViewPainter {
public:
    explicit ViewPainter(CGContext& context)
        : context_(context)
    {
    }

    // Both in the view's own coordinates, which are the context's at present. The view's transform does not count; its
    // look does.
    void paint(UIView& view, CGRect dirty);

private:
    using Subviews = std::span<const std::shared_ptr<UIView>>;
    // The subviews in front, from one that is opaque, and where something is seen of what is behind that. Empty: all is.
    struct Hidden {
        Subviews front;
        std::vector<CGRect> beside;
    };

    // A mask that is nothing else.
    struct Gradient {
        MaskedPicture& kept;
        MaskGradient gradient;
        CGRect bounds; // in the gradient's own coordinates
        bool covers(CGRect area) const;
    };

    void paintInSuperview(UIView& view, CGRect dirty);
    void paintGroup(UIView& view, CGRect dirty);
    void paintLayer(UIView& view, CGRect dirty, CGFloat alpha);
    void paintContent(UIView& view, CGRect dirty);
    void paintClipped(UIView& view, const RoundedRect& shape, CGRect dirty);
    void paintInOrder(UIView& view, const RoundedRect& shape, Subviews subviews, CGRect dirty);
    void paintBackground(UIView& view, const RoundedRect& shape, CGRect dirty);
    void paintShadow(UIView& view, CGRect dirty);
    void clipTo(const RoundedRect& shape);
    std::optional<Gradient> gradientOver(UIView& mask, CGRect area) const;
    bool paintKept(UIView& view, CGRect area, CGRect dirty, const Gradient& gradient, CGFloat alpha);
    std::optional<ShapePieces> piecesOfMask(UIView& mask, CGRect dirty) const;
    Hidden hiddenBehind(Subviews subviews, CGRect dirty) const;
    static bool isPlain(const UIView& view); // nothing of its own shows, or changes what does

    CGContext& context_;
    bool isOutline_ = false; // of a shadow: what is painted throws none of its own
};

} // namespace platform
