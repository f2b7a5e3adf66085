// SPDX-License-Identifier: MIT
#include "platform/uikit/UITabBar.h"

#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIBezierPath.h"
#include "platform/uikit/UIControl.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UIImageView.h"
#include "platform/uikit/UILabel.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr CGFloat imageHeight = 24, titleHeight = 14; // points
constexpr CGFloat widestTab = 160;                    // tabs of a wide window stand together in its middle
constexpr CGFloat focusRingWidth = 2, focusRingRadius = 8;

} // namespace

// One tab: the picture over the title.
class UITabBar::Tab final : public UIControl {
public:
    Tab()
        : image_(std::make_shared<UIImageView>())
        , title_(std::make_shared<UILabel>())
    {
        image_->setContentMode(UIViewContentMode::scaleAspectFit);
        title_->setFont(UIFont::systemFont(11));
        title_->setTextAlignment(TextAlignment::center);
        for (const std::shared_ptr<UIView>& part :
             {std::shared_ptr<UIView>(image_), std::shared_ptr<UIView>(title_)}) {
            part->setUserInteractionEnabled(false);
            part->accessibility().isHidden = true;
            addSubview(part);
        }
        accessibility().role = AccessibilityRole::tab;
    }
    void setItem(const UITabBarItem& item)
    {
        image_->setImage(item.image.isEmpty()
                             ? item.image
                             : item.image.withRenderingMode(UIImage::RenderingMode::alwaysTemplate));
        title_->setText(item.title);
        accessibility().label = item.title;
        setNeedsLayout();
    }
    void layoutSubviews() override
    {
        UIControl::layoutSubviews();
        auto hasImage = !image_->image().isEmpty();
        auto content = (hasImage ? imageHeight + 2 : 0) + titleHeight;
        auto y = std::round((bounds().height() - content) / 2);
        image_->setFrame(CGRect::make(0, y, bounds().width(), imageHeight));
        title_->setFrame(CGRect::make(2, hasImage ? y + imageHeight + 2 : y,
                                      std::max(bounds().width() - 4, 0.0), titleHeight));
    }
    void tintColorDidChange() override { paintParts(); }
    AccessibilityProperties accessibilityNow() const override
    {
        auto properties = UIControl::accessibilityNow();
        properties.isSelected = isSelected();
        return properties;
    }
    void draw(CGContext& context, CGRect) override
    {
        if (!isFirstResponder())
            return;
        auto ring = bounds().insetBy(focusRingWidth + 2, focusRingWidth);
        if (!ring.isNull())
            context.stroke(UIBezierPath::roundedRect(ring, focusRingRadius), tintColor(),
                           {.lineWidth = focusRingWidth});
    }

protected:
    void controlStateChanged() override
    {
        UIControl::controlStateChanged();
        paintParts();
    }

private:
    void paintParts()
    {
        auto color = isSelected() ? tintColor() : UIColor::secondaryLabel();
        image_->setTintColor(color);
        title_->setTextColor(color);
        setAlpha(isHighlighted() ? 0.5 : 1);
    }
    const std::shared_ptr<UIImageView> image_;
    const std::shared_ptr<UILabel> title_;
};

UITabBar::UITabBar()
{
    setBackgroundColor(UIColor::systemBackground());
    accessibility().role = AccessibilityRole::tabList;
}

void UITabBar::setItems(std::vector<UITabBarItem> items)
{
    while (tabs_.size() > items.size()) {
        tabs_.back()->removeFromSuperview();
        tabs_.pop_back();
    }
    while (tabs_.size() < items.size()) {
        auto tab = std::make_shared<Tab>();
        tab->addAction(
            [this, index = tabs_.size()](UIControl&) {
                if (auto action = onSelect)
                    action(index);
            },
            {UIControlEvents::primaryActionTriggered});
        addSubview(tab);
        tabs_.push_back(std::move(tab));
    }
    for (std::size_t i = 0; i < items.size(); ++i)
        tabs_[i]->setItem(items[i]);
    setSelectedIndex(selected_);
    setNeedsLayout();
}

void UITabBar::setSelectedIndex(std::size_t index)
{
    selected_ = index;
    for (std::size_t i = 0; i < tabs_.size(); ++i) {
        tabs_[i]->setSelected(i == index);
        tabs_[i]->tintColorDidChange(); // which paints it
    }
}

void UITabBar::layoutSubviews()
{
    UIView::layoutSubviews();
    auto area = bounds().inset(safeAreaInsets());
    if (area.isNull() || tabs_.empty())
        return;
    auto count = static_cast<CGFloat>(tabs_.size());
    auto width = std::min(area.width() / count, widestTab);
    auto start = area.midX() - width * count / 2;
    auto isRightToLeft =
        effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    for (std::size_t i = 0; i < tabs_.size(); ++i) {
        auto place = static_cast<CGFloat>(isRightToLeft ? tabs_.size() - 1 - i : i);
        tabs_[i]->setFrame(CGRect::make(start + place * width, area.minY(), width, area.height()));
    }
}

void UITabBar::draw(CGContext& context, CGRect)
{
    auto hair = 1 / std::max(context.scale(), 1.0);
    context.fill(CGRect::make(bounds().minX(), bounds().minY(), bounds().width(), hair),
                 UIColor::separator());
}

bool UITabBar::pressesBegan(const UIPress& press)
{
    auto isRightToLeft =
        effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    auto isArrow = press.key == UIKeyCode::left || press.key == UIKeyCode::right;
    if (!isArrow || press.modifiers.rawValue || tabs_.empty())
        return UIView::pressesBegan(press);
    auto isForward = (press.key == UIKeyCode::right) != isRightToLeft;
    if (isForward ? selected_ + 1 >= tabs_.size() : selected_ == 0)
        return true;
    auto index = isForward ? selected_ + 1 : selected_ - 1;
    tabs_[index]->becomeFirstResponder();
    if (auto action = onSelect)
        action(index);
    return true;
}

} // namespace platform
