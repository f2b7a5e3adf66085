// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIImage.h"
#include "platform/uikit/UIView.h"

namespace platform {

// What a camera sees, filling the view: what does not fit is cut off at the sides. Dark before there is anything. Main thread
// only.
class CameraPreviewView : public UIView {
public:
    CameraPreviewView();

    const UIImage& picture() const { return picture_; }
    void setPicture(UIImage picture);
    // As in a mirror, which is how people expect to see themselves.
    void setMirrored(bool mirrored);
    // All of the picture rather than all of the view: for what was taken.
    void setShowsAll(bool showsAll);

    void draw(CGContext& context, CGRect dirty) override;

private:
    UIImage picture_;
    bool isMirrored_ = false;
    bool showsAll_ = false;
};

} // namespace platform
