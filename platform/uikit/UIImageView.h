// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIImage.h"
#include "platform/uikit/UIView.h"

namespace platform {

// How content of a size of its own stands in a view.
enum class UIViewContentMode {
    scaleToFill,
    scaleAspectFit,
    scaleAspectFill,
    redraw, // as scaleToFill
    center,
    top,
    bottom,
    left,
    right,
    topLeft,
    topRight,
    bottomLeft,
    bottomRight,
};

// Where content of `size` stands in `bounds`. Content without area is placed by its origin, unscaled.
CGRect contentRect(UIViewContentMode mode, CGSize size, CGRect bounds);

// Shows a picture. Takes no events unless told to. Main thread only.
class UIImageView : public UIView {
public:
    UIImageView();
    explicit UIImageView(UIImage image); // as large as the picture
    const UIImage& image() const { return image_; }
    void setImage(UIImage image); // templates and symbols are painted in the tint colour
    UIViewContentMode contentMode() const { return contentMode_; }
    void setContentMode(UIViewContentMode mode); // default scaleToFill

    void draw(CGContext& context, CGRect dirty) override;
    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(CGSize available) const override;
    void tintColorDidChange() override;
    AccessibilityProperties accessibilityNow() const override;

private:
    UIImage image_;
    UIViewContentMode contentMode_ = UIViewContentMode::scaleToFill;
};

} // namespace platform
