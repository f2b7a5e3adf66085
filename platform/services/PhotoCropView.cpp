// SPDX-License-Identifier: MIT
#include "platform/services/PhotoCropView.h"

#include "platform/graphics/CGContext.h"
#include "platform/services/mediaPickerText_p.h"
#include "platform/uikit/AccessibilityEvents.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UIPanGestureRecognizer.h"
#include "platform/uikit/UIPinchGestureRecognizer.h"
#include "platform/uikit/UITapGestureRecognizer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat margin = 16, ringWidth = 3;
constexpr CGFloat keyStep = 20, smallKeyStep = 2; // points
constexpr double keyScale = 1.2, wheelScale = 1.0025, tapScale = 2, mostScale = 10;
constexpr double fewestPixels = 16;

} // namespace

PhotoCropView::PhotoCropView()
{
    setClipsToBounds(true);
    // The recognisers do not outlive the view.
    auto pan = std::make_shared<UIPanGestureRecognizer>([this](UIGestureRecognizer& recognizer) {
        auto& moved = static_cast<UIPanGestureRecognizer&>(recognizer);
        isMoving_ = moved.state() == UIGestureRecognizerState::began
            || moved.state() == UIGestureRecognizerState::changed;
        auto way = moved.translation(*this);
        moved.setTranslation({}, *this);
        useKeys(false);
        moveBy({way.x, way.y});
    });
    pan->minimumDistance = 1;
    auto pinch = std::make_shared<UIPinchGestureRecognizer>([this](UIGestureRecognizer& recognizer) {
        auto& pinched = static_cast<UIPinchGestureRecognizer&>(recognizer);
        setScale(scale() * pinched.scale(), pinched.location(*this));
        pinched.setScale(1);
    });
    auto together = [](UIGestureRecognizer&, UIGestureRecognizer&) { return true; };
    pan->shouldRecognizeSimultaneously = together;
    pinch->shouldRecognizeSimultaneously = together;
    auto tap = std::make_shared<UITapGestureRecognizer>([this](UIGestureRecognizer& recognizer) {
        auto isLarge = scale() > 1.01;
        setScale(isLarge ? 1 : tapScale, recognizer.location(*this));
    });
    tap->numberOfTapsRequired = 2;
    for (const auto& each :
         {std::shared_ptr<UIGestureRecognizer>(pan), std::shared_ptr<UIGestureRecognizer>(pinch),
          std::shared_ptr<UIGestureRecognizer>(tap)})
        addGestureRecognizer(each);
}

void PhotoCropView::setPicture(UIImage picture, CGSize fullSize)
{
    picture_ = std::move(picture);
    fullSize_ = fullSize;
    auto side = mostSide();
    crop_ = CGRect::make((fullSize_.width - side) / 2, (fullSize_.height - side) / 2, side, side);
    setNeedsDisplay();
}

// --- The cut ---------------------------------------------------------------------------------------

double PhotoCropView::mostSide() const
{
    return std::min(fullSize_.width, fullSize_.height);
}

double PhotoCropView::leastSide() const
{
    return std::min(std::max(mostSide() / mostScale, fewestPixels), mostSide());
}

double PhotoCropView::scale() const
{
    return crop_.width() > 0 ? mostSide() / crop_.width() : 1;
}

CGRect PhotoCropView::cropRect() const
{
    if (crop_.isEmpty())
        return {};
    auto side = std::clamp(std::round(crop_.width()), 1.0, mostSide());
    auto x = std::clamp(std::round(crop_.minX()), 0.0, fullSize_.width - side);
    auto y = std::clamp(std::round(crop_.minY()), 0.0, fullSize_.height - side);
    return CGRect::make(x, y, side, side);
}

CGRect PhotoCropView::frameRect() const
{
    auto side = std::max(std::floor(std::min(bounds().width(), bounds().height()) - 2 * margin), 1.0);
    return CGRect::make(std::round(bounds().midX() - side / 2), std::round(bounds().midY() - side / 2), side,
                        side);
}

double PhotoCropView::pointsPerPixel() const
{
    return crop_.width() > 0 ? frameRect().width() / crop_.width() : 1;
}

void PhotoCropView::showCrop(CGRect crop)
{
    crop.origin.x = std::clamp(crop.minX(), 0.0, std::max(fullSize_.width - crop.width(), 0.0));
    crop.origin.y = std::clamp(crop.minY(), 0.0, std::max(fullSize_.height - crop.height(), 0.0));
    crop_ = crop;
    setNeedsDisplay();
}

void PhotoCropView::setScale(double scale, CGPoint fixed)
{
    if (picture_.isEmpty() || !std::isfinite(scale) || scale <= 0)
        return;
    auto side = std::clamp(mostSide() / scale, leastSide(), mostSide());
    auto frame = frameRect();
    // How far into the frame the point is that stays where it is.
    auto across = (fixed.x - frame.minX()) / frame.width(), down = (fixed.y - frame.minY()) / frame.height();
    showCrop(CGRect::make(crop_.minX() + across * (crop_.width() - side),
                          crop_.minY() + down * (crop_.height() - side), side, side));
    notifyAccessibility(*this, AccessibilityEvent::valueChanged);
}

void PhotoCropView::moveBy(CGVector points)
{
    auto moved = crop_;
    moved.origin.x -= points.dx / pointsPerPixel();
    moved.origin.y -= points.dy / pointsPerPixel();
    showCrop(moved);
}

// --- The user --------------------------------------------------------------------------------------

void PhotoCropView::useKeys(bool byKeys)
{
    if (std::exchange(showsRing_, byKeys) != byKeys)
        setNeedsDisplay();
}

bool PhotoCropView::becomeFirstResponder()
{
    setNeedsDisplay();
    return UIView::becomeFirstResponder();
}

bool PhotoCropView::resignFirstResponder()
{
    setNeedsDisplay();
    return UIView::resignFirstResponder();
}

bool PhotoCropView::pressesBegan(const UIPress& press)
{
    auto isShifted = press.modifiers.contains(UIKeyModifierFlags::shift);
    auto others = press.modifiers.rawValue & ~(UIKeyModifierFlags::shift | UIKeyModifierFlags::keypad);
    if (picture_.isEmpty() || others != 0)
        return UIView::pressesBegan(press);
    auto step = isShifted ? smallKeyStep : keyStep;
    auto middle = frameRect().center();
    auto isKey = [&](std::string_view key) {
        return press.key == UIKeyCode::character && press.characters == key;
    };
    if (press.key == UIKeyCode::left)
        moveBy({-step, 0});
    else if (press.key == UIKeyCode::right)
        moveBy({step, 0});
    else if (press.key == UIKeyCode::up)
        moveBy({0, -step});
    else if (press.key == UIKeyCode::down)
        moveBy({0, step});
    else if (isKey("+") || isKey("="))
        setScale(scale() * keyScale, middle);
    else if (isKey("-"))
        setScale(scale() / keyScale, middle);
    else if (isKey("0"))
        setScale(1, middle);
    else
        return UIView::pressesBegan(press);
    useKeys(true);
    return true;
}

bool PhotoCropView::scrollWheel(const UIScrollWheel& wheel)
{
    if (picture_.isEmpty())
        return false;
    if (wheel.isPrecise && !wheel.modifiers.contains(UIKeyModifierFlags::control))
        moveBy(wheel.delta);
    else
        setScale(scale() * std::pow(wheelScale, wheel.delta.dy), convertFrom(wheel.windowLocation, nullptr));
    return true;
}

AccessibilityProperties PhotoCropView::accessibilityNow() const
{
    auto properties = UIView::accessibilityNow();
    properties.role = AccessibilityRole::slider;
    properties.label = mediaPickerText(MediaPickerText::zoom);
    properties.isEnabled = canBecomeFirstResponder();
    auto percent = std::round(scale() * 100);
    auto most = leastSide() > 0 ? std::round(mostSide() / leastSide() * 100) : 100.0;
    properties.value = std::to_string(static_cast<long>(percent)).append(" %");
    properties.range = AccessibilityRange{
        .minimum = 100, .maximum = most, .value = std::clamp(percent, 100.0, most), .step = 1};
    return properties;
}

bool PhotoCropView::accessibilitySetValue(double value)
{
    setScale(value / 100, frameRect().center());
    return !picture_.isEmpty();
}

bool PhotoCropView::accessibilityAdjust(int steps)
{
    setScale(scale() * std::pow(keyScale, steps), frameRect().center());
    return !picture_.isEmpty();
}

// --- Drawing ---------------------------------------------------------------------------------------

void PhotoCropView::draw(CGContext& context, CGRect)
{
    context.fill(bounds(), UIColor::black());
    if (picture_.isEmpty())
        return;
    auto frame = frameRect();
    auto points = pointsPerPixel();
    context.drawImage(picture_,
                      CGRect::make(frame.minX() - crop_.minX() * points, frame.minY() - crop_.minY() * points,
                                   fullSize_.width * points, fullSize_.height * points));
    auto veil = UIColor::gray(0, isMoving_ ? 0.4 : 0.6);
    auto all = bounds();
    context.fill(CGRect::make(0, 0, all.width(), frame.minY()), veil);
    context.fill(CGRect::make(0, frame.maxY(), all.width(), all.height() - frame.maxY()), veil);
    context.fill(CGRect::make(0, frame.minY(), frame.minX(), frame.height()), veil);
    context.fill(CGRect::make(frame.maxX(), frame.minY(), all.width() - frame.maxX(), frame.height()), veil);
    auto line = 1 / std::max(traitCollection().displayScale, 1.0);
    if (isMoving_) {
        auto third = frame.width() / 3;
        for (int i = 1; i < 3; ++i) {
            context.fill(CGRect::make(frame.minX() + i * third, frame.minY(), line, frame.height()),
                         UIColor::gray(1, 0.5));
            context.fill(CGRect::make(frame.minX(), frame.minY() + i * third, frame.width(), line),
                         UIColor::gray(1, 0.5));
        }
    }
    if (showsRing_ && isFirstResponder())
        context.stroke(UIBezierPath::rect(frame.insetBy(-ringWidth / 2 - 1, -ringWidth / 2 - 1)), tintColor(),
                       {.lineWidth = ringWidth});
    context.stroke(UIBezierPath::rect(frame.insetBy(-0.5, -0.5)), UIColor::white());
}

} // namespace platform
