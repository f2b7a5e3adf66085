// SPDX-License-Identifier: MIT
#include "platform/uikit/UINavigationBar.h"

#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIBezierPath.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/UIButton.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/systemText.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr CGFloat gap = 8; // points around and between
constexpr CGFloat smallestTitle = 60;
constexpr CGSize arrowSize{12, 20};

} // namespace

UINavigationBar::UINavigationBar()
    : title_(std::make_shared<UILabel>())
    , back_(std::make_shared<UIButton>())
{
    setBackgroundColor(UIColor::systemBackground());
    title_->setPreferredFont(FontTextStyle::headline);
    title_->setTextAlignment(TextAlignment::center);
    title_->accessibility().role = AccessibilityRole::header;
    addSubview(title_);
    back_->setHidden(true);
    back_->addAction(
        [this](UIControl&) {
            if (auto action = onBack)
                action();
        },
        {UIControlEvents::primaryActionTriggered});
    addSubview(back_);
    makeArrow();
}

void UINavigationBar::show(const std::string& title, bool hasBack, const std::string& backTitle)
{
    title_->setText(title);
    title_->setHidden(title.empty());
    back_->setHidden(!hasBack);
    back_->setTitle(backTitle.empty() ? systemText(SystemText::back) : backTitle);
    setNeedsLayout();
}

// Points to where reading begins.
void UINavigationBar::makeArrow()
{
    auto isRightToLeft =
        effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    auto scale = traitCollection().displayScale;
    auto image = makeImage(arrowSize, scale > 0 ? scale : 1, [&](CGContext& context) {
        UIBezierPath path;
        auto tip = isRightToLeft ? 10.5 : 1.5, end = isRightToLeft ? 2.5 : 9.5;
        path.moveTo({end, 2});
        path.addLine({tip, 10});
        path.addLine({end, 18});
        StrokeStyle style;
        style.lineWidth = 2.2;
        style.lineCap = LineCap::round;
        style.lineJoin = LineJoin::round;
        context.stroke(path, UIColor::black(), style);
    });
    if (image)
        back_->setImage(image->withRenderingMode(UIImage::RenderingMode::alwaysTemplate));
}

void UINavigationBar::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIView::traitCollectionDidChange(previous);
    makeArrow();
    setNeedsLayout();
    setNeedsDisplay();
}

void UINavigationBar::layoutSubviews()
{
    UIView::layoutSubviews();
    auto area = bounds().inset(safeAreaInsets());
    if (area.isNull())
        area = bounds();
    auto isRightToLeft =
        effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    auto titleWidth = title_->isHidden()
        ? 0
        : std::min(std::ceil(title_->sizeThatFits(area.size).width), area.width() - 2 * gap);
    auto backWidth = 0.0;
    if (!back_->isHidden()) {
        auto room = std::max(area.width() - std::min(titleWidth, smallestTitle) - 3 * gap, 0.0);
        auto wanted = back_->sizeThatFits({room, area.height()}).width;
        backWidth = std::min({wanted, room, std::max(area.width() / 3, arrowSize.width + 2 * gap)});
        auto x = isRightToLeft ? area.maxX() - gap - backWidth : area.minX() + gap;
        back_->setFrame(CGRect::make(x, area.minY(), backWidth, area.height()));
    }
    // In the middle of the bar while the button leaves it there, else in the middle of what is left.
    auto taken = back_->isHidden() ? gap : backWidth + 2 * gap;
    titleWidth = std::clamp(titleWidth, 0.0, std::max(area.width() - taken - gap, 0.0));
    auto x = area.midX() - titleWidth / 2;
    if (isRightToLeft)
        x = std::min(x, area.maxX() - taken - titleWidth);
    else
        x = std::max(x, area.minX() + taken);
    title_->setFrame(CGRect::make(std::round(x), area.minY(), titleWidth, area.height()));
}

void UINavigationBar::draw(CGContext& context, CGRect)
{
    auto hair = 1 / std::max(context.scale(), 1.0);
    auto area = bounds();
    context.fill(CGRect::make(area.minX(), area.maxY() - hair, area.width(), hair), UIColor::separator());
}

} // namespace platform
