// SPDX-License-Identifier: MIT
#include "platform/services/FontListView.h"

#include "platform/graphics/CGContext.h"
#include "platform/uikit/UIControl.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UILabel.h"

#include <QtCore/QList>
#include <QtGui/QFontDatabase>

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat rowHeight = 44, inset = 16, fontSize = 19, headingSize = 13;

// A family of signs cannot write its own name.
UIFont faceOf(const std::string& family)
{
    auto face = UIFont::systemFont(fontSize);
    auto systems = QFontDatabase::writingSystems(QString::fromStdString(family));
    return systems.contains(QFontDatabase::Latin) ? face.withFamily(family) : face;
}

} // namespace

class FontListView::Cell : public UIControl {
public:
    explicit Cell(const Row& row)
        : row_(row)
        , label_(std::make_shared<UILabel>())
    {
        label_->setText(row.text);
        label_->setFont(row.isHeading ? UIFont::systemFont(headingSize, FontWeight::semibold)
                                      : faceOf(row.text));
        label_->setTextColor(row.isHeading ? UIColor::secondaryLabel() : UIColor::label());
        label_->accessibility().isHidden = !row.isHeading;
        addSubview(label_);
        setEnabled(!row.isHeading);
    }
    const Row& row() const { return row_; }
    void setRing(bool shows)
    {
        if (std::exchange(hasRing_, shows) != shows)
            setNeedsDisplay();
    }
    bool canBecomeFirstResponder() const override { return false; } // the list has the keyboard
    std::optional<Cursor> cursorAt(CGPoint) const override
    {
        return row_.isHeading ? std::nullopt : std::optional(Cursor::pointingHand);
    }
    void layoutSubviews() override
    {
        UIControl::layoutSubviews();
        auto room = bounds().insetBy(inset, 0);
        label_->setFrame(room.isNull() ? bounds() : room);
        // Names stand where the page begins, whatever they are written in.
        label_->setTextAlignment(isMirrored() ? TextAlignment::right : TextAlignment::left);
    }
    void draw(CGContext& context, CGRect) override
    {
        auto all = bounds();
        if (isHighlighted())
            context.fill(all, UIColor::systemFill());
        else if (isHovered_ && !row_.isHeading)
            context.fill(all, UIColor::quaternarySystemFill());
        auto hairline = 1 / std::max(traitCollection().displayScale, 1.0);
        context.fill(
            CGRect::make(isMirrored() ? 0 : inset, all.maxY() - hairline, all.width() - inset, hairline),
            UIColor::separator());
        auto ring = all.insetBy(3, 3);
        if (hasRing_ && !ring.isNull())
            context.stroke(UIBezierPath::roundedRect(ring, 8), tintColor(), {.lineWidth = 2});
    }
    void pointerEntered() override
    {
        isHovered_ = true;
        setNeedsDisplay();
    }
    void pointerExited() override
    {
        isHovered_ = false;
        setNeedsDisplay();
    }
    AccessibilityProperties accessibilityNow() const override
    {
        auto properties = UIControl::accessibilityNow();
        properties.role = row_.isHeading ? AccessibilityRole::none : AccessibilityRole::button;
        properties.label = row_.text;
        properties.isSelected = hasRing_;
        return properties;
    }

private:
    bool isMirrored() const
    {
        return effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    }

    const Row row_;
    const std::shared_ptr<UILabel> label_;
    bool isHovered_ = false, hasRing_ = false;
};

FontListView::FontListView()
{
    setClipsToBounds(true);
    setShowsHorizontalScrollIndicator(false);
}

CGRect FontListView::rowFrame(std::size_t index) const
{
    return CGRect::make(0, static_cast<CGFloat>(index) * rowHeight, bounds().width(), rowHeight);
}

void FontListView::setRows(std::vector<Row> rows)
{
    if (rows == rows_)
        return;
    rows_ = std::move(rows);
    for (auto& [index, cell] : cells_)
        cell->removeFromSuperview();
    cells_.clear();
    chosen_ = 0;
    moveChoice(0);
    setContentOffset({});
    setNeedsLayout();
}

void FontListView::layoutSubviews()
{
    setContentSize({bounds().width(), static_cast<CGFloat>(rows_.size()) * rowHeight});
    placeCells();
    UITableView::layoutSubviews();
}

void FontListView::contentOffsetDidChange()
{
    placeCells();
}

void FontListView::placeCells()
{
    if (bounds().isEmpty())
        return;
    auto row = [](CGFloat y) { return static_cast<std::size_t>(std::max(std::floor(y / rowHeight), 0.0)); };
    auto first = row(bounds().minY()), last = std::min(row(bounds().maxY()) + 1, rows_.size());
    std::erase_if(cells_, [&](const auto& each) {
        auto isGone = each.first < first || each.first >= last;
        if (isGone)
            each.second->removeFromSuperview();
        return isGone;
    });
    for (auto index = first; index < last; ++index) {
        auto& cell = cells_[index];
        if (!cell) {
            cell = std::make_shared<Cell>(rows_[index]);
            // A subview does not outlive the list.
            cell->addAction(
                [this, family = rows_[index].text](UIControl&) {
                    if (auto pick = onPick)
                        pick(family);
                },
                {UIControlEvents::primaryActionTriggered});
            auto next = cells_.upper_bound(index);
            if (next != cells_.end())
                insertSubviewBelow(cell, *next->second);
            else
                insertSubview(cell, cells_.size() - 1);
        }
        cell->setFrame(rowFrame(index));
    }
    showChoice();
}

void FontListView::showChoice()
{
    for (auto& [index, cell] : cells_)
        cell->setRing(isFirstResponder() && index == chosen_);
}

// Headings are passed over, onwards where there is something, else back.
void FontListView::moveChoice(std::ptrdiff_t step)
{
    if (rows_.empty())
        return;
    auto last = static_cast<std::ptrdiff_t>(rows_.size()) - 1;
    auto target = std::clamp(static_cast<std::ptrdiff_t>(chosen_) + step, std::ptrdiff_t(0), last);
    auto isHeading = [&](std::ptrdiff_t index) { return rows_[static_cast<std::size_t>(index)].isHeading; };
    auto way = std::ptrdiff_t(step < 0 ? -1 : 1);
    while (isHeading(target) && target + way >= 0 && target + way <= last)
        target += way;
    if (isHeading(target))
        return;
    chosen_ = static_cast<std::size_t>(target);
    scrollRectToVisible(rowFrame(chosen_));
    placeCells();
}

bool FontListView::becomeFirstResponder()
{
    auto done = UITableView::becomeFirstResponder();
    showChoice();
    return done;
}

bool FontListView::resignFirstResponder()
{
    auto done = UITableView::resignFirstResponder();
    showChoice();
    return done;
}

bool FontListView::pressesBegan(const UIPress& press)
{
    if (rows_.empty() || press.modifiers.rawValue != 0)
        return UITableView::pressesBegan(press);
    auto page = std::max(static_cast<std::ptrdiff_t>(bounds().height() / rowHeight) - 1, std::ptrdiff_t(1));
    auto all = static_cast<std::ptrdiff_t>(rows_.size());
    switch (press.key) {
    case UIKeyCode::up:
        moveChoice(-1);
        return true;
    case UIKeyCode::down:
        moveChoice(1);
        return true;
    case UIKeyCode::pageUp:
        moveChoice(-page);
        return true;
    case UIKeyCode::pageDown:
        moveChoice(page);
        return true;
    case UIKeyCode::home:
        chosen_ = 0;
        moveChoice(0);
        return true;
    case UIKeyCode::end:
        moveChoice(all);
        return true;
    case UIKeyCode::returnKey:
    case UIKeyCode::space:
        if (auto pick = onPick; pick && !press.isRepeat && !rows_[chosen_].isHeading)
            pick(std::string(rows_[chosen_].text)); // this may be gone
        return true;
    default:
        return UITableView::pressesBegan(press);
    }
}

AccessibilityProperties FontListView::accessibilityNow() const
{
    auto properties = UITableView::accessibilityNow();
    properties.role = AccessibilityRole::list;
    return properties;
}

} // namespace platform
