// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIImage.h"
#include "platform/uikit/UIView.h"

namespace platform {

// A picture beneath a square frame, which it always fills. It is dragged with the pointer or a finger and with two fingers
// on the touchpad, and scaled with the wheel, by pinching, and with two clicks. The arrows move it (Shift: less), plus and
// minus scale it, and 0 shows as much as fits; to assistive technology it is a slider of its scale. Main thread only.
class PhotoCropView : public UIView {
public:
    PhotoCropView();

    // `picture` may have fewer pixels than what it stands for. Shows as much of the middle as fits.
    void setPicture(UIImage picture, CGSize fullSize);
    // What is in the frame: a square of whole pixels of the full size, inside of it. Empty without a picture.
    CGRect cropRect() const;

    bool canBecomeFirstResponder() const override
    {
        return !picture_.isEmpty() && isUserInteractionEnabled();
    }
    bool becomeFirstResponder() override;
    bool resignFirstResponder() override;
    void draw(CGContext& context, CGRect dirty) override;
    bool pressesBegan(const UIPress& press) override;
    bool scrollWheel(const UIScrollWheel& wheel) override;
    AccessibilityProperties accessibilityNow() const override;
    bool accessibilitySetValue(double value) override;
    bool accessibilityAdjust(int steps) override;

private:
    CGRect frameRect() const; // of what is kept; own coordinates
    double pointsPerPixel() const;
    double mostSide() const;
    double leastSide() const;
    double scale() const; // 1 where as much is shown as fits
    void setScale(double scale, CGPoint fixed);
    void moveBy(CGVector points);
    void showCrop(CGRect crop);
    void useKeys(bool byKeys);

    UIImage picture_;
    CGSize fullSize_;
    CGRect crop_; // in pixels of the full size, not rounded
    bool isMoving_ = false;
    bool showsRing_ = false; // for those who go by keys
};

} // namespace platform
