// SPDX-License-Identifier: MIT
#include "platform/services/VideoTrimStrip.h"

#include "platform/graphics/CGContext.h"
#include "platform/services/mediaDuration.h"
#include "platform/services/mediaPickerText_p.h"
#include "platform/uikit/AccessibilityEvents.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UIImageView.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat gripWidth = 18, headWidth = 14, edge = 4, radius = 8;
constexpr double frameStep = 1.0 / 30, secondStep = 1, shortest = 0.1; // seconds
constexpr std::size_t mostPictures = 60;

UIColor frameColor()
{
    return {1, 0.8, 0.04};
}

} // namespace

class VideoTrimStrip::Grip : public UIControl {
public:
    Grip(VideoTrimStrip& strip, Handle handle)
        : strip_(strip)
        , handle_(handle)
    {
    }
    bool canBecomeFirstResponder() const override { return isEnabled(); }
    std::optional<Cursor> cursorAt(CGPoint) const override { return Cursor::resizeHorizontal; }

    void draw(CGContext& context, CGRect) override
    {
        auto all = bounds();
        if (handle_ == Handle::head) {
            auto line = CGRect::make(all.midX() - 2, 0, 4, all.height());
            context.fill(UIBezierPath::roundedRect(line.insetBy(-1, 0), 3), UIColor::gray(0, 0.35));
            context.fill(UIBezierPath::roundedRect(line, 2),
                         isFirstResponder() ? tintColor() : UIColor::white());
            return;
        }
        auto corners = handle_ == Handle::start ? UIRectCorner::topLeft | UIRectCorner::bottomLeft
                                                : UIRectCorner::topRight | UIRectCorner::bottomRight;
        context.fill(UIBezierPath::roundedRect(all, radius, corners), frameColor());
        auto mark = CGRect::make(all.midX() - 1.5, all.midY() - 9, 3, 18);
        context.fill(UIBezierPath::roundedRect(mark, 1.5), UIColor::gray(0, 0.7));
        auto ring = all.insetBy(1.5, 1.5);
        if (isFirstResponder() && !ring.isNull())
            context.stroke(UIBezierPath::roundedRect(ring, radius - 2, corners), tintColor(),
                           {.lineWidth = 3});
    }

    bool pressesBegan(const UIPress& press) override
    {
        auto isShifted = press.modifiers.rawValue == UIKeyModifierFlags::shift;
        if (press.modifiers.rawValue != 0 && !isShifted)
            return UIControl::pressesBegan(press);
        auto step = isShifted ? secondStep : frameStep;
        auto now = strip_.valueOf(handle_);
        switch (press.key) {
        case UIKeyCode::left:
        case UIKeyCode::down:
            strip_.move(handle_, now - step);
            return true;
        case UIKeyCode::right:
        case UIKeyCode::up:
            strip_.move(handle_, now + step);
            return true;
        case UIKeyCode::home:
            strip_.move(handle_, 0);
            return true;
        case UIKeyCode::end:
            strip_.move(handle_, strip_.duration());
            return true;
        case UIKeyCode::space:
        case UIKeyCode::returnKey:
            return false; // they play, and finish
        default:
            return UIControl::pressesBegan(press);
        }
    }

    AccessibilityProperties accessibilityNow() const override
    {
        auto properties = UIControl::accessibilityNow();
        properties.role = AccessibilityRole::slider;
        properties.label = mediaPickerText(handle_ == Handle::start     ? MediaPickerText::beginning
                                               : handle_ == Handle::end ? MediaPickerText::end
                                                                        : MediaPickerText::position);
        properties.value = mediaDuration(strip_.valueOf(handle_));
        properties.range = AccessibilityRange{
            .minimum = 0, .maximum = strip_.duration(), .value = strip_.valueOf(handle_), .step = frameStep};
        return properties;
    }
    bool accessibilitySetValue(double value) override
    {
        strip_.move(handle_, value);
        return true;
    }
    bool accessibilityAdjust(int steps) override
    {
        strip_.move(handle_, strip_.valueOf(handle_) + steps * secondStep);
        return true;
    }

protected:
    bool beginTracking(UITouch& touch) override
    {
        becomeFirstResponder();
        grabbed_ =
            strip_.placeOf(strip_.valueOf(handle_)) - strip_.convertFrom(touch.windowLocation, nullptr).x;
        return true;
    }
    bool continueTracking(UITouch& touch) override
    {
        auto film = strip_.filmRect();
        auto x = strip_.convertFrom(touch.windowLocation, nullptr).x + grabbed_;
        if (film.width() > 0)
            strip_.move(handle_, (x - film.minX()) / film.width() * strip_.duration());
        return true;
    }

private:
    VideoTrimStrip& strip_; // whose subview this is
    const Handle handle_;
    CGFloat grabbed_ = 0; // from the finger to the place of the handle
};

VideoTrimStrip::VideoTrimStrip()
{
    for (auto handle : {Handle::start, Handle::end, Handle::head})
        grips_[static_cast<std::size_t>(handle)] = std::make_shared<Grip>(*this, handle);
    for (auto handle : {Handle::head, Handle::start, Handle::end})
        addSubview(grips_[static_cast<std::size_t>(handle)]);
}

void VideoTrimStrip::setDuration(double duration, double longest)
{
    duration_ = std::isfinite(duration) ? std::max(duration, 0.0) : 0;
    longest_ = std::isfinite(longest) && longest > 0 ? longest : duration_;
    start_ = head_ = 0;
    end_ = std::min(duration_, longest_);
    setNeedsLayout();
    setNeedsDisplay();
}

void VideoTrimStrip::setHead(double head)
{
    head_ = std::clamp(std::isfinite(head) ? head : start_, start_, end_);
    setNeedsLayout();
}

double VideoTrimStrip::valueOf(Handle handle) const
{
    return handle == Handle::start ? start_ : handle == Handle::end ? end_ : head_;
}

// The part keeps at least a moment, and at most what is allowed: the other end is taken along.
void VideoTrimStrip::move(Handle handle, double to)
{
    if (!std::isfinite(to) || duration_ <= 0)
        return;
    auto least = std::min(shortest, duration_);
    if (handle == Handle::start) {
        start_ = std::clamp(to, 0.0, std::max(end_ - least, 0.0));
        end_ = std::min(end_, start_ + longest_);
        head_ = start_;
    } else if (handle == Handle::end) {
        end_ = std::clamp(to, std::min(start_ + least, duration_), duration_);
        start_ = std::max(start_, end_ - longest_);
        head_ = end_;
    } else {
        head_ = std::clamp(to, start_, end_);
    }
    setNeedsLayout();
    setNeedsDisplay();
    notifyAccessibility(*grips_[static_cast<std::size_t>(handle)], AccessibilityEvent::valueChanged);
    if (auto moved = onMove)
        moved(handle);
}

CGRect VideoTrimStrip::filmRect() const
{
    auto film = bounds().insetBy(gripWidth, edge);
    return film.isNull() ? CGRect{bounds().origin, {}} : film;
}

CGFloat VideoTrimStrip::placeOf(double seconds) const
{
    auto film = filmRect();
    return film.minX() + (duration_ > 0 ? seconds / duration_ : 0) * film.width();
}

std::size_t VideoTrimStrip::pictureCount(double aspect) const
{
    auto film = filmRect();
    if (film.isEmpty())
        return 0;
    auto wide = film.height() * std::clamp(std::isfinite(aspect) ? aspect : 1, 0.4, 3.0);
    return std::clamp(static_cast<std::size_t>(std::ceil(film.width() / wide)), std::size_t(1), mostPictures);
}

void VideoTrimStrip::setPictures(std::vector<UIImage> pictures)
{
    pictures_ = std::move(pictures);
    setNeedsDisplay();
}

void VideoTrimStrip::draw(CGContext& context, CGRect)
{
    auto film = filmRect();
    if (film.isEmpty())
        return;
    context.fill(film, UIColor::tertiarySystemFill());
    auto wide = film.width() / static_cast<double>(std::max(pictures_.size(), std::size_t(1)));
    for (std::size_t i = 0; i < pictures_.size(); ++i) {
        auto place =
            CGRect::make(film.minX() + static_cast<double>(i) * wide, film.minY(), wide, film.height());
        if (pictures_[i].isEmpty())
            continue;
        context.save();
        context.clip(place);
        context.drawImage(pictures_[i],
                          contentRect(UIViewContentMode::scaleAspectFill, pictures_[i].size(), place));
        context.restore();
    }
    auto left = placeOf(start_), right = placeOf(end_);
    auto veil = UIColor::dynamic(UIColor::gray(1, 0.65), UIColor::gray(0, 0.65));
    context.fill(CGRect::make(film.minX(), film.minY(), left - film.minX(), film.height()), veil);
    context.fill(CGRect::make(right, film.minY(), film.maxX() - right, film.height()), veil);
    for (auto y : {bounds().minY(), bounds().maxY() - edge})
        context.fill(CGRect::make(left, y, right - left, edge), frameColor());
}

void VideoTrimStrip::layoutSubviews()
{
    UIView::layoutSubviews();
    auto high = bounds().height();
    auto& [start, end, head] = grips_;
    start->setFrame(CGRect::make(placeOf(start_) - gripWidth, 0, gripWidth, high));
    end->setFrame(CGRect::make(placeOf(end_), 0, gripWidth, high));
    head->setFrame(CGRect::make(placeOf(head_) - headWidth / 2, 0, headWidth, high));
    for (const auto& grip : grips_)
        grip->setEnabled(duration_ > 0);
}

} // namespace platform
