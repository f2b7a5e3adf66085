// SPDX-License-Identifier: MIT
#include "platform/services/MediaCell.h"

#include "platform/graphics/CGContext.h"
#include "platform/services/mediaDuration.h"
#include "platform/uikit/UIImageView.h"
#include "platform/uikit/UILabel.h"

#include <utility>

namespace platform {

namespace {

constexpr CGFloat inset = 5, durationHeight = 18, ringWidth = 3;

} // namespace

// In front of the picture: what the pointer and the keyboard do.
class MediaCell::Veil : public UIView {
public:
    bool isHovered = false, isPressed = false, hasRing = false;

    Veil() { setUserInteractionEnabled(false); }
    void draw(CGContext& context, CGRect) override
    {
        if (isPressed || isHovered)
            context.fill(bounds(), UIColor::gray(0, isPressed ? 0.28 : 0.12));
        if (!hasRing)
            return;
        for (auto [width, color] :
             {std::pair(ringWidth + 2, UIColor::white()), std::pair(ringWidth, tintColor())}) {
            auto line = bounds().insetBy(width / 2, width / 2);
            if (!line.isNull())
                context.stroke(UIBezierPath::rect(line), color, {.lineWidth = width});
        }
    }
};

MediaCell::MediaCell()
    : picture_(std::make_shared<UIImageView>())
    , name_(std::make_shared<UILabel>())
    , duration_(std::make_shared<UILabel>())
    , veil_(std::make_shared<Veil>())
{
    setClipsToBounds(true);
    // Opaque, so that nothing is mixed: pages are made of these.
    setBackgroundColor(UIColor::secondarySystemBackground());
    picture_->setClipsToBounds(true);
    picture_->accessibility().isHidden = true;
    name_->setPreferredFont(FontTextStyle::caption2);
    name_->setTextColor(UIColor::secondaryLabel());
    name_->setTextAlignment(TextAlignment::center);
    name_->setNumberOfLines(3);
    duration_->setPreferredFont(FontTextStyle::caption2);
    duration_->setTextColor(UIColor::white());
    duration_->setTextAlignment(TextAlignment::center);
    duration_->setBackgroundColor(UIColor::gray(0, 0.55));
    duration_->setCornerRadius(durationHeight / 2);
    duration_->setClipsToBounds(true);
    for (const auto& label : {name_, duration_})
        label->accessibility().isHidden = true; // the cell is one thing
    addSubview(name_);
    addSubview(picture_);
    addSubview(duration_);
    addSubview(veil_);
}

void MediaCell::show(const LibraryFile& file)
{
    file_ = file;
    isLoaded_ = false;
    setEnabled(true);
    picture_->setImage({});
    picture_->setAlpha(1);
    name_->setHidden(true);
    duration_->setHidden(true);
    name_->setText(file.name());
}

void MediaCell::show(const Thumbnail& thumbnail)
{
    isLoaded_ = true;
    picture_->setImage(thumbnail.image);
    name_->setHidden(!thumbnail.image.isEmpty());
    setEnabled(thumbnail.isMedium);
    duration_->setHidden(!file_.isVideo || !thumbnail.isMedium);
    duration_->setText(mediaDuration(thumbnail.seconds));
    setNeedsLayout();
}

void MediaCell::setRing(bool shows)
{
    if (std::exchange(veil_->hasRing, shows) != shows)
        veil_->setNeedsDisplay();
}

void MediaCell::layoutSubviews()
{
    UIControl::layoutSubviews();
    auto all = bounds();
    picture_->setFrame(all);
    // One that is as large as the cell, but for the point that cells differ by, is painted as it is.
    auto size = picture_->image().size();
    auto fits = [](CGFloat length, CGFloat room) { return length >= room && length <= room + 1; };
    picture_->setContentMode(fits(size.width, all.width()) && fits(size.height, all.height())
                                 ? UIViewContentMode::topLeft
                                 : UIViewContentMode::scaleAspectFill);
    veil_->setFrame(all);
    auto inner = all.insetBy(inset, inset);
    name_->setFrame(inner.isNull() ? all : inner);
    auto width = duration_->sizeThatFits(all.size).width + 12;
    auto isRightToLeft =
        effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    duration_->setFrame(CGRect::make(isRightToLeft ? inset : all.maxX() - inset - width,
                                     all.maxY() - inset - durationHeight, width, durationHeight));
}

void MediaCell::pointerEntered()
{
    veil_->isHovered = true;
    veil_->setNeedsDisplay();
}

void MediaCell::pointerExited()
{
    veil_->isHovered = false;
    veil_->setNeedsDisplay();
}

void MediaCell::tintColorDidChange()
{
    UIControl::tintColorDidChange();
    veil_->setNeedsDisplay();
}

void MediaCell::controlStateChanged()
{
    veil_->isPressed = isHighlighted();
    veil_->setNeedsDisplay();
    name_->setAlpha(isEnabled() ? 1 : 0.5);
}

AccessibilityProperties MediaCell::accessibilityNow() const
{
    auto properties = UIControl::accessibilityNow();
    properties.role = AccessibilityRole::button;
    properties.label = file_.name();
    properties.value = duration_->isHidden() ? "" : duration_->text();
    properties.isSelected = veil_->hasRing;
    return properties;
}

} // namespace platform
