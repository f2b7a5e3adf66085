// SPDX-License-Identifier: MIT
// How a list's rows are gone through and chosen by keys and pointer. The keyboard is at a row: at the first control in it
// that takes keys, or else at its cell. From outside of the list it comes to the chosen row, or to the first in sight.
#include "platform/swiftui/LazyListNode.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/swiftui/ListRowNode.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UIScrollView.h"

#include <algorithm>

namespace platform {

void LazyListNode::attach(ListRowNode& node)
{
    node.cell().onKey = [this, &node](const UIPress& press) { return handleKey(press, node); };
    if (selection_)
        node.cell().onPress = [this, &node] {
            if (auto row = rowOf(node))
                choose(*row);
            node.cell().focus();
        };
}

std::optional<std::size_t> LazyListNode::rowOf(const ListRowNode& node) const
{
    auto found = std::ranges::find_if(mounted_, [&](auto& each) { return each.second.get() == &node; });
    return found == mounted_.end() ? std::nullopt : std::optional(found->first);
}

// The nearest row that is no header or footer, from `row + step` on in the direction of the step, else back from there.
std::optional<std::size_t> LazyListNode::nextRow(std::size_t row, std::ptrdiff_t step) const
{
    auto count = static_cast<std::ptrdiff_t>(rows_.count());
    auto start = std::clamp(static_cast<std::ptrdiff_t>(row) + step, std::ptrdiff_t{0}, count - 1);
    auto direction = step < 0 ? -1 : 1;
    for (auto way : {direction, -direction}) {
        for (auto each = start; each >= 0 && each < count; each += way) {
            if (rows_.at(static_cast<std::size_t>(each)).run.kind == RowKind::row)
                return static_cast<std::size_t>(each);
        }
    }
    return std::nullopt;
}

bool LazyListNode::handleKey(const UIPress& press, const ListRowNode& node)
{
    auto at = awaitsFocus_ ? awaitsFocus_ : rowOf(node);
    auto modifiers = press.modifiers.rawValue & ~UIKeyModifierFlags::keypad;
    if (kind_ != ListKind::list || !at || *at >= rows_.count() || modifiers != 0)
        return false;
    auto count = static_cast<std::ptrdiff_t>(rows_.count());
    auto page = [&](CGFloat direction) {
        auto there = heights_.rowAt(heights_.offset(*at) + direction * scrollView_->bounds().height() * 0.9);
        return static_cast<std::ptrdiff_t>(there) - static_cast<std::ptrdiff_t>(*at);
    };
    std::ptrdiff_t step = 0;
    switch (press.key) {
    case UIKeyCode::up:
        step = -1;
        break;
    case UIKeyCode::down:
        step = 1;
        break;
    case UIKeyCode::home:
        step = -count;
        break;
    case UIKeyCode::end:
        step = count;
        break;
    case UIKeyCode::pageUp:
        step = std::min<std::ptrdiff_t>(page(-1), -1);
        break;
    case UIKeyCode::pageDown:
        step = std::max<std::ptrdiff_t>(page(1), 1);
        break;
    case UIKeyCode::space:
    case UIKeyCode::returnKey:
        if (!selection_)
            return false;
        choose(*at);
        return true;
    default:
        return false;
    }
    auto row = nextRow(*at, step);
    if (!row)
        return false;
    goTo(*row); // the first and the last row keep the key: it does not scroll what is around
    return true;
}

void LazyListNode::goTo(std::size_t row)
{
    awaitsFocus_ = row;
    showInSight(row);
    if (mounted_.contains(row))
        followFocus();
    else
        invalidateLayout();
    choose(row);
}

void LazyListNode::showInSight(std::size_t row)
{
    scrollView_->scrollRectToVisible(
        CGRect::make(0, heights_.offset(row), std::max(width_, 0.0), heights_.height(row)));
}

// In a turn of its own: rows are made in a layout, which must not change what it lays out.
void LazyListNode::followFocus()
{
    RunLoop::main().perform([this, isMounted = std::weak_ptr(isMounted_)] {
        if (!isMounted.lock() || !awaitsFocus_)
            return;
        auto found = mounted_.find(*awaitsFocus_);
        if (found == mounted_.end())
            return;
        auto row = *std::exchange(awaitsFocus_, std::nullopt);
        auto cell = found->second->platformView();
        showInSight(row); // its height is known by now
        ListCell::of(*cell).focus();
    });
}

void LazyListNode::choose(std::size_t row)
{
    if (!selection_ || row >= rows_.count())
        return;
    auto [run, index] = rows_.at(row);
    auto selection = selection_; // whoever is told may replace it
    if (run.kind == RowKind::row)
        selection->choose(run.source->identityOf(index));
}

void LazyListNode::setSelection(std::shared_ptr<const RowSelection> selection)
{
    selection_ = std::move(selection);
    if (selection_)
        selection_->registerReader(*this);
    showKeyboardState();
}

void LazyListNode::showKeyboardState()
{
    auto offset = scrollView_->contentOffset().y;
    ListRowNode* entry = nullptr; // where the keyboard comes in
    bool isEntryChosen = false, hasFocus = false;
    for (auto& [row, node] : mounted_) {
        auto [run, index] = rows_.at(row);
        auto isChosen =
            selection_ && run.kind == RowKind::row && selection_->isChosen(run.source->identityOf(index));
        node->cell().setChosen(isChosen);
        node->cell().setReachable(false);
        if (run.kind != RowKind::row)
            continue;
        if (node->hasFocus()) {
            entry = node.get();
            hasFocus = true;
        }
        auto isSeen = node->placedRect().maxY() > offset + 1;
        if (!hasFocus && ((isChosen && !isEntryChosen) || (!entry && isSeen))) {
            entry = node.get();
            isEntryChosen = isChosen;
        }
    }
    if (entry && kind_ == ListKind::list)
        entry->cell().setReachable(true);
}

} // namespace platform
