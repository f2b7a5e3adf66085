// SPDX-License-Identifier: MIT
#include "platform/services/MediaGridView.h"

#include "platform/services/MediaCell.h"
#include "platform/uikit/UIEvent.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat gap = 2, usualSide = 116;

} // namespace

MediaGridView::MediaGridView()
    : loader_(ThumbnailLoader::make())
{
    setClipsToBounds(true);
    setShowsHorizontalScrollIndicator(false);
}

MediaGridView::~MediaGridView() = default;

bool MediaGridView::isRightToLeft() const
{
    return effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
}

MediaGridView::Grid MediaGridView::grid() const
{
    auto width = std::max(bounds().width(), 1.0);
    auto columns = std::max(std::floor((width + gap) / (usualSide + gap)), 3.0);
    return {static_cast<std::size_t>(columns), std::max((width - gap * (columns - 1)) / columns, 1.0)};
}

CGRect MediaGridView::cellFrame(std::size_t index) const
{
    auto [columns, side] = grid();
    auto column = static_cast<CGFloat>(index % columns), row = static_cast<CGFloat>(index / columns);
    auto x = std::round(column * (side + gap)), end = std::round(column * (side + gap) + side);
    if (isRightToLeft())
        x = std::round(bounds().width()) - end;
    auto step = std::round(side + gap);
    return CGRect::make(x, row * step, end - std::round(column * (side + gap)), step - gap);
}

void MediaGridView::setFiles(std::vector<LibraryFile> files)
{
    files_ = std::move(files);
    chosen_ = 0;
    impatient_.reset();
    for (auto& [index, cell] : cells_) {
        loader_->cancel(cell->file());
        cell->removeFromSuperview();
        spare_.push_back(cell);
    }
    cells_.clear();
    setContentOffset({});
    laidOutWidth_ = -1;
    setNeedsLayout();
}

void MediaGridView::layoutSubviews()
{
    auto width = bounds().width();
    auto scale = std::max(traitCollection().displayScale, 1.0);
    // As large as the cells are, to the pixel: such pictures are copied to the screen as they are.
    const ThumbnailSize size{.side = static_cast<int>(std::ceil(std::ceil(grid().side) * scale)),
                             .scale = scale};
    if (loader_->size() != size) {
        loader_->setSize(size);
        std::vector<std::size_t> shown;
        for (const auto& [index, cell] : cells_)
            shown.push_back(index);
        load(std::move(shown));
    }
    if (width != laidOutWidth_) {
        laidOutWidth_ = width;
        auto height = files_.empty() ? 0 : cellFrame(files_.size() - 1).maxY();
        setContentSize({width, height});
    }
    placeCells();
    UICollectionView::layoutSubviews();
}

void MediaGridView::contentOffsetDidChange()
{
    placeCells();
}

std::shared_ptr<MediaCell> MediaGridView::takeCell()
{
    if (!spare_.empty()) {
        auto cell = std::move(spare_.back());
        spare_.pop_back();
        return cell;
    }
    auto cell = std::make_shared<MediaCell>();
    // A subview does not outlive the grid.
    cell->addAction(
        [this](UIControl& control) {
            auto& tapped = static_cast<MediaCell&>(control);
            tapped.isLoaded() ? pick(tapped.file()) : void(impatient_ = tapped.file());
        },
        {UIControlEvents::primaryActionTriggered});
    return cell;
}

void MediaGridView::take(MediaCell& cell, const Thumbnail& thumbnail)
{
    cell.show(thumbnail);
    if (impatient_ == cell.file() && thumbnail.isMedium)
        pick(cell.file()); // this may be gone
}

void MediaGridView::pick(LibraryFile file)
{
    impatient_.reset();
    if (auto told = onPick)
        told(file); // this may be gone
}

void MediaGridView::placeCells()
{
    if (files_.empty() || bounds().isEmpty())
        return;
    auto [columns, side] = grid();
    auto step = std::round(side + gap);
    auto row = [&](CGFloat y) { return static_cast<std::size_t>(std::max(std::floor(y / step), 0.0)); };
    auto first = row(bounds().minY() - step) * columns;
    auto last = std::min((row(bounds().maxY() + step) + 1) * columns, files_.size());
    for (auto each = cells_.begin(); each != cells_.end();) {
        if (each->first >= first && each->first < last) {
            ++each;
            continue;
        }
        loader_->cancel(each->second->file());
        each->second->removeFromSuperview();
        spare_.push_back(each->second);
        each = cells_.erase(each);
    }
    std::vector<std::size_t> added; // and to be loaded
    for (auto index = first; index < last; ++index) {
        auto& cell = cells_[index];
        if (!cell) {
            cell = takeCell();
            cell->show(files_[index]);
            // Below the scroll indicators, in the order of reading.
            auto next = cells_.upper_bound(index);
            if (next != cells_.end())
                insertSubviewBelow(cell, *next->second);
            else
                insertSubview(cell, cells_.size() - 1);
            auto known = loader_->cached(files_[index]);
            if (known)
                cell->show(*known);
            if (!known || known->size != loader_->size())
                added.push_back(index);
        }
        cell->setFrame(cellFrame(index));
    }
    load(std::move(added));
    showChoice();
}

// What is asked for last comes first: the first one in sight, then the others in sight.
void MediaGridView::load(std::vector<std::size_t> places)
{
    std::ranges::reverse(places);
    std::ranges::stable_partition(
        places, [this](std::size_t index) { return !cellFrame(index).intersects(bounds()); });
    for (auto index : places)
        loader_->load(
            files_[index],
            [this, weak = std::weak_ptr(cells_[index]), file = files_[index]](const Thumbnail& made) {
                if (auto present = weak.lock(); present && present->file() == file)
                    take(*present, made);
            });
}

// --- Keyboard --------------------------------------------------------------------------------------

void MediaGridView::showChoice()
{
    for (auto& [index, cell] : cells_)
        cell->setRing(isFirstResponder() && index == chosen_);
}

void MediaGridView::moveChoice(std::ptrdiff_t step)
{
    auto last = static_cast<std::ptrdiff_t>(files_.size()) - 1;
    auto target = std::clamp(static_cast<std::ptrdiff_t>(chosen_) + step, std::ptrdiff_t(0), last);
    chosen_ = static_cast<std::size_t>(target);
    scrollRectToVisible(cellFrame(chosen_));
    placeCells();
}

bool MediaGridView::becomeFirstResponder()
{
    auto done = UICollectionView::becomeFirstResponder();
    showChoice();
    return done;
}

bool MediaGridView::resignFirstResponder()
{
    auto done = UICollectionView::resignFirstResponder();
    showChoice();
    return done;
}

bool MediaGridView::pressesBegan(const UIPress& press)
{
    if (files_.empty() || press.modifiers.rawValue != 0)
        return UICollectionView::pressesBegan(press);
    auto columns = static_cast<std::ptrdiff_t>(grid().columns);
    auto rows =
        std::max(static_cast<std::ptrdiff_t>(bounds().height() / (grid().side + gap)), std::ptrdiff_t(1));
    auto all = static_cast<std::ptrdiff_t>(files_.size());
    auto forward = std::ptrdiff_t(isRightToLeft() ? -1 : 1);
    switch (press.key) {
    case UIKeyCode::left:
        moveChoice(-forward);
        return true;
    case UIKeyCode::right:
        moveChoice(forward);
        return true;
    case UIKeyCode::up:
        moveChoice(static_cast<std::ptrdiff_t>(chosen_) >= columns ? -columns : 0);
        return true;
    case UIKeyCode::down:
        moveChoice(columns);
        return true;
    case UIKeyCode::pageUp:
        moveChoice(-columns * rows);
        return true;
    case UIKeyCode::pageDown:
        moveChoice(columns * rows);
        return true;
    case UIKeyCode::home:
        moveChoice(-all);
        return true;
    case UIKeyCode::end:
        moveChoice(all);
        return true;
    case UIKeyCode::returnKey:
    case UIKeyCode::space:
        if (!press.isRepeat) {
            moveChoice(0);
            if (auto cell = cells_.find(chosen_); cell != cells_.end())
                cell->second->performPrimaryAction(); // this may be gone
        }
        return true;
    default:
        return UICollectionView::pressesBegan(press);
    }
}

AccessibilityProperties MediaGridView::accessibilityNow() const
{
    auto properties = UICollectionView::accessibilityNow();
    properties.role = AccessibilityRole::list;
    return properties;
}

} // namespace platform
