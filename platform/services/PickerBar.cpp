// SPDX-License-Identifier: MIT
#include "platform/services/PickerBar.h"

#include "platform/uikit/UIButton.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/systemText.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat inset = 8;

} // namespace

PickerBar::PickerBar()
    : cancel_(std::make_shared<UIButton>())
    , done_(std::make_shared<UIButton>())
    , title_(std::make_shared<UILabel>())
    , line_(std::make_shared<UIView>())
{
    cancel_->setTitle(systemText(SystemText::cancel));
    done_->setHidden(true);
    title_->setPreferredFont(FontTextStyle::headline);
    title_->setTextAlignment(TextAlignment::center);
    title_->accessibility().role = AccessibilityRole::header;
    line_->setBackgroundColor(UIColor::separator());
    line_->setUserInteractionEnabled(false);
    for (const auto& view : {std::shared_ptr<UIView>(cancel_), std::shared_ptr<UIView>(title_),
                             std::shared_ptr<UIView>(done_), line_})
        addSubview(view);
}

const std::string& PickerBar::title() const
{
    return title_->text();
}

void PickerBar::setTitle(std::string title)
{
    title_->setText(std::move(title));
    setNeedsLayout();
}

void PickerBar::setDoneTitle(std::string title)
{
    done_->setHidden(title.empty());
    done_->setTitle(std::move(title));
    setNeedsLayout();
}

void PickerBar::layoutSubviews()
{
    UIView::layoutSubviews();
    auto width = bounds().width(), high = bounds().height();
    auto isMirrored = effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    auto leading = std::min(cancel_->sizeThatFits({width, high}).width, width / 2);
    auto trailing = done_->isHidden() ? 0 : std::min(done_->sizeThatFits({width, high}).width, width / 2);
    auto place = [&](UIView& view, CGFloat x, CGFloat wide) {
        view.setFrame(CGRect::make(isMirrored ? width - x - wide : x, 0, wide, high));
    };
    place(*cancel_, inset, leading);
    place(*done_, width - inset - trailing, trailing);
    auto side = inset * 2 + std::max(leading, trailing);
    // In the middle where there is room, else in what is left.
    auto natural = title_->sizeThatFits({width, high}).width;
    if (natural <= width - 2 * side)
        place(*title_, side, width - 2 * side);
    else
        place(*title_, leading + 2 * inset, std::max(width - leading - trailing - 4 * inset, 0.0));
    auto hairline = 1 / std::max(traitCollection().displayScale, 1.0);
    line_->setFrame(CGRect::make(0, high - hairline, width, hairline));
}

PickerPage::PickerPage()
{
    setBackgroundColor(UIColor::systemBackground());
}

CGRect PickerPage::placeBar(PickerBar& bar) const
{
    auto area = bounds().inset(safeAreaInsets());
    if (area.isNull())
        area = bounds();
    bar.setFrame(CGRect::make(area.minX(), area.minY(), area.width(), PickerBar::height));
    auto top = bar.frame().maxY();
    return CGRect::make(area.minX(), top, area.width(), std::max(area.maxY() - top, 0.0));
}

bool PickerPage::take(const UIPress& press)
{
    auto action = press.key == UIKeyCode::escape ? onEscape
        : press.key == UIKeyCode::returnKey      ? onReturn
        : press.key == UIKeyCode::space          ? onSpace
                                                 : std::function<void()>();
    if (!action || (press.modifiers.rawValue & ~UIKeyModifierFlags::keypad) != 0)
        return false;
    if (!press.isRepeat)
        action(); // this may be gone
    return true;
}

bool PickerPage::pressesBegan(const UIPress& press)
{
    return take(press) || UIView::pressesBegan(press);
}

// Of a page in which nothing has the keyboard.
bool PickerPage::performKeyEquivalent(const UIPress& press)
{
    return take(press);
}

} // namespace platform
