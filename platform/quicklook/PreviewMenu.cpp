// SPDX-License-Identifier: MIT
#include "platform/quicklook/PreviewMenu.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGContext.h"
#include "platform/uikit/UIControl.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/UIScrollView.h"
#include "platform/uikit/UIWindow.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat rowHeight = 28, groupGap = 9, panelInset = 5, panelRadius = 9;
constexpr CGFloat checkWidth = 26, sideInset = 12, shortcutGap = 24, leastWidth = 160, windowInset = 6;

UIColor panelColor()
{
    return UIColor::dynamic(UIColor(0.98, 0.98, 0.985), UIColor(0.165, 0.165, 0.175), UIColor::white(),
                            UIColor::gray(0.06));
}

std::shared_ptr<UILabel> makeLabel(std::string text, const UIColor& color)
{
    auto label = std::make_shared<UILabel>();
    label->setPreferredFont(FontTextStyle::subheadline);
    label->setText(std::move(text));
    label->setTextColor(color);
    label->setUserInteractionEnabled(false);
    label->accessibility().isHidden = true;
    return label;
}

} // namespace

// The menu's ground: scrolls when the window is lower than the menu.
class PreviewMenu::Panel : public UIScrollView {
public:
    Panel()
    {
        setBackgroundColor(panelColor());
        setCornerRadius(panelRadius);
        setClipsToBounds(true);
        accessibility().role = AccessibilityRole::list;
    }
    void draw(CGContext& context, CGRect) override
    {
        bool isHighContrast = traitCollection().accessibilityContrast == UIAccessibilityContrast::high;
        StrokeStyle edge;
        edge.lineWidth = 1;
        context.stroke(UIBezierPath::roundedRect(bounds().insetBy(0.5, 0.5), panelRadius),
                       isHighContrast ? UIColor::label() : UIColor::separator(), edge);
        for (auto y : lines)
            context.fill(CGRect::make(panelInset + 6, y, bounds().width() - 2 * panelInset - 12, 1),
                         UIColor::separator());
    }
    std::vector<CGFloat> lines; // between groups
};

class PreviewMenu::Row : public UIControl {
public:
    explicit Row(const PreviewMenuItem& item)
        : title_(makeLabel(item.title, item.isEnabled ? UIColor::label() : UIColor::tertiaryLabel()))
        , shortcut_(makeLabel(item.shortcut, UIColor::secondaryLabel()))
        , isChecked_(item.isChecked)
    {
        addSubview(title_);
        addSubview(shortcut_);
        accessibility().label = item.title;
        accessibility().hint = item.shortcut;
        setEnabled(item.isEnabled);
    }
    CGFloat wantedWidth() const
    {
        auto shortcut = shortcut_->sizeThatFits({unlimitedWidth, 0}).width;
        return checkWidth + std::ceil(title_->sizeThatFits({unlimitedWidth, 0}).width) + sideInset
            + (shortcut > 0 ? shortcut + shortcutGap : 0);
    }
    void layoutSubviews() override
    {
        UIControl::layoutSubviews();
        auto area = bounds();
        auto shortcut = std::ceil(shortcut_->sizeThatFits({unlimitedWidth, 0}).width);
        auto title = std::max(area.width() - checkWidth - sideInset - shortcut, 0.0);
        bool mirrors = isMirrored();
        title_->setFrame(
            CGRect::make(mirrors ? area.width() - checkWidth - title : checkWidth, 0, title, area.height()));
        title_->setTextAlignment(mirrors ? TextAlignment::right : TextAlignment::left);
        shortcut_->setFrame(CGRect::make(mirrors ? sideInset : area.width() - sideInset - shortcut, 0,
                                         shortcut, area.height()));
    }
    void draw(CGContext& context, CGRect) override
    {
        auto area = bounds();
        if (isFirstResponder() || isHighlighted())
            context.fill(UIBezierPath::roundedRect(area, 6),
                         tintColor().withAlphaComponent(isHighlighted() ? 0.35 : 0.22));
        if (!isChecked_)
            return;
        auto x = isMirrored() ? area.width() - checkWidth / 2 : checkWidth / 2;
        auto y = area.midY();
        UIBezierPath check;
        check.moveTo({x - 4, y});
        check.addLine({x - 1, y + 3.5});
        check.addLine({x + 4.5, y - 4});
        context.stroke(check, UIColor::label(), {1.6, LineCap::round, LineJoin::round, 10, {}, 0});
    }
    void pointerEntered() override { becomeFirstResponder(); }
    AccessibilityProperties accessibilityNow() const override
    {
        auto properties = UIControl::accessibilityNow();
        properties.role = AccessibilityRole::listItem;
        properties.isSelected = isChecked_;
        return properties;
    }

private:
    bool isMirrored() const
    {
        return effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    }
    std::shared_ptr<UILabel> title_, shortcut_;
    const bool isChecked_;
};

PreviewMenu::PreviewMenu(std::vector<PreviewMenuItem> items)
    : items_(std::move(items))
    , panel_(std::make_shared<Panel>())
{
    accessibility().role = AccessibilityRole::group;
    accessibility().isModal = true;
    addSubview(panel_);
    for (std::size_t index = 0; index < items_.size(); ++index) {
        auto row = std::make_shared<Row>(items_[index]);
        row->addAction([this, index](UIControl&) { choose(index); },
                       {UIControlEvents::primaryActionTriggered | UIControlEvents::touchUpInside});
        rows_.push_back(row);
        panel_->addSubview(row);
    }
}

std::shared_ptr<PreviewMenu> PreviewMenu::present(const UIView& anchor, std::string label,
                                                  std::vector<PreviewMenuItem> items)
{
    assertOnMainThread();
    auto window = anchor.window();
    if (!window)
        return nullptr;
    auto menu = std::make_shared<PreviewMenu>(std::move(items));
    menu->accessibility().label = std::move(label);
    menu->anchor_ = anchor.convertTo(anchor.bounds(), nullptr);
    menu->setFrame(window->bounds());
    menu->setAutoresizingMask({UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight});
    window->addSubview(menu);
    menu->layoutIfNeeded();
    window->beginModal(menu);
    auto checked = std::ranges::find(menu->items_, true, &PreviewMenuItem::isChecked);
    auto first = checked == menu->items_.end() ? 0 : checked - menu->items_.begin();
    if (!menu->rows_.empty() && !menu->rows_[static_cast<std::size_t>(first)]->becomeFirstResponder())
        menu->moveFocus(1);
    return menu;
}

void PreviewMenu::dismiss()
{
    assertOnMainThread();
    auto keepAlive = weak_from_this().lock();
    if (auto window = this->window())
        window->endModal(*this);
    removeFromSuperview();
}

void PreviewMenu::choose(std::size_t index)
{
    auto keepAlive = weak_from_this().lock();
    if (!superview()) // both events of one press come here
        return;
    auto action = items_[index].action;
    dismiss();
    if (action)
        action();
}

void PreviewMenu::layoutSubviews()
{
    UIView::layoutSubviews();
    CGFloat width = leastWidth, height = panelInset;
    for (std::size_t index = 0; index < rows_.size(); ++index) {
        width = std::max(width, rows_[index]->wantedWidth());
        height += rowHeight + (items_[index].beginsGroup && index > 0 ? groupGap : 0);
    }
    height += panelInset;
    auto area = bounds();
    width = std::min(width + 2 * panelInset, std::max(area.width() - 2 * windowInset, 0.0));
    auto y = anchor_.maxY() + 3;
    auto isMirrored = effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    auto x = isMirrored ? anchor_.minX() : anchor_.maxX() - width;
    x = std::clamp(x, windowInset, std::max(windowInset, area.width() - width - windowInset));
    panel_->setFrame(CGRect::make(std::round(x), std::round(y), std::round(width),
                                  std::min(height, std::max(area.height() - y - windowInset, rowHeight))));
    panel_->setContentSize({width, height});
    auto top = panelInset;
    panel_->lines.clear();
    for (std::size_t index = 0; index < rows_.size(); ++index) {
        if (items_[index].beginsGroup && index > 0) {
            panel_->lines.push_back(std::round(top + groupGap / 2));
            top += groupGap;
        }
        rows_[index]->setFrame(CGRect::make(panelInset, top, std::round(width) - 2 * panelInset, rowHeight));
        top += rowHeight;
    }
}

void PreviewMenu::moveFocus(int step)
{
    auto count = static_cast<int>(rows_.size());
    auto present = std::ranges::find_if(rows_, [](const auto& row) { return row->isFirstResponder(); });
    auto from = present != rows_.end() ? static_cast<int>(present - rows_.begin()) : step > 0 ? -1 : count;
    for (int tried = 1; tried <= count; ++tried) {
        auto index = static_cast<std::size_t>(((from + tried * step) % count + count) % count);
        if (rows_[index]->becomeFirstResponder()) {
            panel_->scrollRectToVisible(rows_[index]->frame());
            return;
        }
    }
}

bool PreviewMenu::pressesBegan(const UIPress& press)
{
    if (press.key == UIKeyCode::escape)
        dismiss();
    else if (press.key == UIKeyCode::down)
        moveFocus(1);
    else if (press.key == UIKeyCode::up)
        moveFocus(-1);
    else
        return press.key != UIKeyCode::tab; // nothing else happens behind an open menu
    return true;
}

void PreviewMenu::touchesBegan(UITouch& touch)
{
    if (!panel_->frame().contains(touch.location(*this)))
        dismiss();
}

} // namespace platform
