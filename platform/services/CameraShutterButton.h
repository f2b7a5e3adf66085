// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIControl.h"

namespace platform {

// The round button of a camera: white for photos, red for movies, with a red square in it while one is recorded. Main thread
// only.
class CameraShutterButton : public UIControl {
public:
    enum class Face { photo, video, recording };
    static constexpr CGFloat side = 68; // points

    CameraShutterButton();
    Face face() const { return face_; }
    void setFace(Face face);

    void draw(CGContext& context, CGRect dirty) override;
    CGSize sizeThatFits(CGSize available) const override;
    bool pointInside(CGPoint point) const override;
    std::optional<Cursor> cursorAt(CGPoint point) const override;
    AccessibilityProperties accessibilityNow() const override;

protected:
    void controlStateChanged() override;

private:
    Face face_ = Face::photo;
};

} // namespace platform
