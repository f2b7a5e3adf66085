// SPDX-License-Identifier: MIT
#include "platform/services/CameraShutterButton.h"

#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIBezierPath.h"
#include "platform/services/cameraText_p.h"

#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat ringWidth = 4, gap = 3, focusWidth = 2;

CameraText nameOf(CameraShutterButton::Face face)
{
    switch (face) {
    case CameraShutterButton::Face::photo:
        return CameraText::takePhoto;
    case CameraShutterButton::Face::video:
        return CameraText::record;
    case CameraShutterButton::Face::recording:
        break;
    }
    return CameraText::stop;
}

} // namespace

CameraShutterButton::CameraShutterButton()
{
    accessibility().role = AccessibilityRole::button;
}

void CameraShutterButton::setFace(Face face)
{
    if (std::exchange(face_, face) != face)
        setNeedsDisplay();
}

void CameraShutterButton::controlStateChanged()
{
    setNeedsDisplay();
}

void CameraShutterButton::draw(CGContext& context, CGRect)
{
    auto white = UIColor::gray(1, isEnabled() ? 1 : 0.35);
    auto red = UIColor(1, 0.23, 0.19, isEnabled() ? 1 : 0.35);
    auto oval = [&](CGFloat inset) { return UIBezierPath::oval(bounds().insetBy(inset, inset)); };
    if (bounds().width() < 2 * side / 3)
        return;
    // The ring takes the tint's colour where the keyboard is.
    auto outer = focusWidth + ringWidth / 2;
    context.stroke(oval(outer), white, {.lineWidth = ringWidth});
    if (isFirstResponder())
        context.stroke(oval(focusWidth / 2), tintColor(), {.lineWidth = focusWidth});
    auto inset = focusWidth + ringWidth + gap + (isHighlighted() ? 3 : 0);
    if (face_ != Face::recording) {
        context.fill(oval(inset), face_ == Face::photo ? white : red);
        return;
    }
    auto square = std::round(bounds().width() * (isHighlighted() ? 0.36 : 0.4));
    auto rect = CGRect::make(bounds().midX() - square / 2, bounds().midY() - square / 2, square, square);
    context.fill(UIBezierPath::roundedRect(rect, 6), red);
}

CGSize CameraShutterButton::sizeThatFits(CGSize) const
{
    return {side, side};
}

bool CameraShutterButton::pointInside(CGPoint point) const
{
    return std::hypot(point.x - bounds().midX(), point.y - bounds().midY()) <= bounds().width() / 2;
}

std::optional<UIView::Cursor> CameraShutterButton::cursorAt(CGPoint) const
{
    return isEnabled() ? std::optional(Cursor::pointingHand) : std::nullopt;
}

AccessibilityProperties CameraShutterButton::accessibilityNow() const
{
    auto properties = UIControl::accessibilityNow();
    properties.label = cameraText(nameOf(face_));
    return properties;
}

} // namespace platform
