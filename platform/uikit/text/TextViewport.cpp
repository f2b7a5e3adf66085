// SPDX-License-Identifier: MIT
#include "platform/uikit/text/TextViewport.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr CGFloat tolerance = 0.01; // points
// Further than this many viewports, a way is estimated rather than walked.
constexpr CGFloat walkLimit = 4;
constexpr std::int64_t endlessRow = 1 << 24; // columns; more than any fragment has

} // namespace

TextViewport::TextViewport(const TextBuffer& text)
    : text_(text)
    , cache_(text)
    , heights_(text)
{
}

// --- Laying out anew -----------------------------------------------------------------------------

void TextViewport::setSize(CGSize size)
{
    if (size == size_)
        return;
    size_ = size;
    layOutAnew();
}

void TextViewport::setInsets(UIEdgeInsets insets)
{
    if (insets == insets_)
        return;
    insets_ = insets;
    layOutAnew();
}

void TextViewport::setStyle(const TextStyle& style)
{
    if (style == cache_.style() && anchor_.shaped)
        return;
    auto kept = mark_ ? *mark_ : mark();
    cache_.setStyle(style, cache_.width());
    lineHeight_ = TextLayout({}, style).size().height;
    mark_ = kept;
    layOutAnew();
}

void TextViewport::setScale(CGFloat scale)
{
    if (scale == scale_ || !(scale > 0))
        return;
    scale_ = scale;
    isVisibleValid_ = false;
}

void TextViewport::layOutAnew()
{
    auto kept = mark_ ? *mark_ : mark();
    auto column = std::max(cache_.style().font.columnWidth(), 0.1);
    auto width = std::max(size_.width - insets_.left - insets_.right, column);
    cache_.setStyle(cache_.style(), width);
    bool wraps = cache_.style().lineBreak != LineBreak::none;
    heights_.setRows(wraps ? static_cast<std::int64_t>((width + tolerance) / column) : endlessRow,
                     lineHeight_);
    if (wraps)
        rowsOffset_ = 0;
    restore(kept);
    mark_ = kept;
}

TextViewport::Mark TextViewport::mark() const
{
    if (!anchor_.shaped || isAtStart())
        return {};
    auto& layout = anchor_.shaped->layout;
    auto& line = layout.lines()[layout.lineAt(anchor_.y)];
    return {anchor_.shaped->outside(line.bytes.begin),
            (anchor_.y - line.y) / std::max(line.height, tolerance), false};
}

void TextViewport::restore(const Mark& mark)
{
    isVisibleValid_ = false;
    if (mark.isAtStart) {
        anchor_ = {};
        return;
    }
    auto shaped = shapedAt(std::min(mark.offset, text_.end()));
    auto& line = shaped->layout.lines()[shaped->layout.lineOf(shaped->inside(mark.offset))];
    anchor_ = clamped({shaped, line.y + mark.row * line.height});
}

void TextViewport::handleEdit(Utf8Offset at, std::int64_t removed, std::int64_t inserted)
{
    auto kept = mark();
    if (kept.offset >= at + removed)
        kept.offset = kept.offset + (inserted - removed);
    else
        kept.offset = std::min(kept.offset, at);
    cache_.handleEdit(at);
    heights_.handleEdit(at, removed, inserted);
    mark_.reset();
    restore(kept);
}

void TextViewport::handleNewText()
{
    cache_.forgetAll();
    heights_.handleNewText();
    mark_.reset();
    rowsOffset_ = 0;
    restore({});
}

// --- Walking -------------------------------------------------------------------------------------

std::shared_ptr<const ShapedFragment> TextViewport::shape(const TextFragment& fragment) const
{
    auto count = cache_.shapingCount();
    auto shaped = cache_.shape(fragment);
    if (cache_.shapingCount() != count)
        heights_.correct(fragment, shaped->height());
    return shaped;
}

std::shared_ptr<const ShapedFragment> TextViewport::after(const ShapedFragment& shaped) const
{
    auto fragment = fragmentAfter(text_, shaped.fragment);
    return fragment ? shape(*fragment) : nullptr;
}

std::shared_ptr<const ShapedFragment> TextViewport::before(const ShapedFragment& shaped) const
{
    auto fragment = fragmentBefore(text_, shaped.fragment);
    return fragment ? shape(*fragment) : nullptr;
}

std::shared_ptr<const ShapedFragment> TextViewport::shapedAt(Utf8Offset offset) const
{
    return shape(fragmentAt(text_, offset));
}

// Moves on until `y` lies inside of the fragment; past the ends of the text it stays outside.
TextPlace TextViewport::walk(TextPlace place) const
{
    while (place.y < 0) {
        auto previous = before(*place.shaped);
        if (!previous)
            break;
        place = {previous, place.y + previous->height()};
    }
    while (place.y >= place.shaped->height()) {
        auto next = after(*place.shaped);
        if (!next)
            break;
        place = {next, place.y - place.shaped->height()};
    }
    return place;
}

TextPlace TextViewport::moved(TextPlace place, CGFloat distance) const
{
    place.y += distance;
    place = walk(std::move(place));
    place.y = std::clamp(place.y, 0.0, place.shaped->height());
    return place;
}

// --- The anchor ----------------------------------------------------------------------------------

TextPlace TextViewport::startAnchor() const
{
    return {shape(firstFragment(text_)), -insets_.top};
}

TextPlace TextViewport::endAnchor() const
{
    auto last = shape(lastFragment(text_));
    return clamped({last, last->height()});
}

const TextPlace& TextViewport::anchor() const
{
    if (!anchor_.shaped)
        anchor_ = startAnchor();
    return anchor_;
}

// The nearest place at which neither more than the top inset nor more than the bottom inset shows.
TextPlace TextViewport::clamped(TextPlace place) const
{
    place = walk(std::move(place));
    auto bottom = place.shaped->height() - place.y + insets_.bottom;
    for (auto at = place.shaped; bottom < size_.height;) {
        at = after(*at);
        if (!at) {
            place.y -= size_.height - bottom;
            place = walk(std::move(place));
            break;
        }
        bottom += at->height();
    }
    if (place.y < 0) // above the first line: walking went no further
        place.y = std::max(place.y, -insets_.top);
    return place;
}

bool TextViewport::setAnchor(TextPlace place)
{
    auto former = anchor();
    anchor_ = clamped(std::move(place));
    mark_.reset();
    isVisibleValid_ = false;
    return former.shaped->fragment.range.start != anchor_.shaped->fragment.range.start
        || std::abs(former.y - anchor_.y) > tolerance;
}

TextPlace TextViewport::anchorAtHeight(CGFloat contentOffset) const
{
    auto place = heights_.at(contentOffset - insets_.top);
    auto shaped = shape(place.fragment);
    if (contentOffset < insets_.top)
        return {shaped, contentOffset - insets_.top};
    return {shaped, std::min(place.offset, shaped->height())};
}

// --- Scrolling -----------------------------------------------------------------------------------

CGFloat TextViewport::scrollBy(CGFloat distance)
{
    if (!std::isfinite(distance) || distance == 0)
        return 0;
    auto from = anchor();
    if (std::abs(distance) > walkLimit * std::max(size_.height, lineHeight_)) {
        auto before = contentOffset();
        if (!setAnchor(anchorAtHeight(before + distance)))
            return 0;
        return isAtStart() || isAtEnd() ? contentOffset() - before : distance;
    }
    auto wanted = walk({from.shaped, from.y + distance});
    setAnchor(wanted);
    // What was clamped away is the way from where it is to where it should be: at most one viewport.
    CGFloat missing = 0;
    if (distance > 0) {
        auto at = anchor_;
        for (; at.shaped->fragment != wanted.shaped->fragment; at = {after(*at.shaped), 0})
            missing += at.shaped->height() - at.y;
        missing += wanted.y - at.y;
    } else {
        missing = std::min(0.0, wanted.y - anchor_.y);
        if (wanted.shaped->fragment != anchor_.shaped->fragment)
            missing = 0;
    }
    auto used = distance - missing;
    return distance > 0 ? std::max(0.0, used) : std::min(0.0, used);
}

bool TextViewport::scrollToStart()
{
    return setAnchor(startAnchor());
}

bool TextViewport::scrollToEnd()
{
    return setAnchor(endAnchor());
}

void TextViewport::scrollToFraction(double fraction)
{
    if (!(fraction > 0))
        scrollToStart();
    else if (fraction >= 1)
        scrollToEnd();
    else
        setAnchor(anchorAtHeight(fraction * std::max(0.0, contentHeight() - size_.height)));
}

bool TextViewport::scrollToTop(Utf8Offset offset)
{
    auto shaped = shapedAt(std::min(offset, text_.end()));
    auto y = shaped->layout.caretRect(shaped->inside(offset)).minY();
    if (offset == Utf8Offset{0})
        y = -insets_.top;
    return setAnchor({shaped, y});
}

TextViewport::RowsExtent TextViewport::rowsExtent() const
{
    RowsExtent extent{std::min(rowsOffset_, 0.0), std::max(rowsOffset_, 0.0)};
    if (cache_.style().lineBreak != LineBreak::none)
        return extent;
    auto width = size_.width - insets_.left - insets_.right;
    for (auto& each : visible()) {
        auto begin = each.origin.x + rowsOffset_ - insets_.left;
        extent.least = std::min(extent.least, std::floor(begin));
        extent.most = std::max(extent.most, std::ceil(begin + each.shaped->layout.size().width + 2 - width));
    }
    return extent;
}

CGFloat TextViewport::scrollAlongRowsBy(CGFloat distance)
{
    if (!std::isfinite(distance) || distance == 0)
        return 0;
    auto extent = rowsExtent();
    auto offset = std::round(std::clamp(rowsOffset_ + distance, extent.least, extent.most) * scale_) / scale_;
    auto used = offset - rowsOffset_;
    rowsOffset_ = offset;
    isVisibleValid_ = false;
    return used;
}

bool TextViewport::revealAlongRow(Utf8Offset offset, CaretAffinity affinity)
{
    if (cache_.style().lineBreak != LineBreak::none)
        return false;
    auto caret = caretRect(offset, affinity);
    if (!caret)
        return false;
    auto left = insets_.left, right = std::max(left, size_.width - insets_.right - 2);
    if (caret->minX() < left)
        return scrollAlongRowsBy(caret->minX() - left) != 0;
    return caret->minX() > right && scrollAlongRowsBy(caret->minX() - right) != 0;
}

bool TextViewport::isAtStart() const
{
    auto& at = anchor();
    return at.y <= -insets_.top + tolerance && at.shaped->fragment.range.start == Utf8Offset{0};
}

bool TextViewport::isAtEnd() const
{
    auto& last = visible().back();
    bool isLast = last.shaped->fragment.endsLine && last.shaped->fragment.lineEndSize == 0;
    return isLast
        && last.origin.y + last.shaped->height() + insets_.bottom <= size_.height + 0.5 / scale_ + tolerance;
}

CGFloat TextViewport::contentHeight() const
{
    return heights_.total() + insets_.top + insets_.bottom;
}

CGFloat TextViewport::contentOffset() const
{
    auto& at = anchor();
    return heights_.above(at.shaped->fragment) + insets_.top + at.y;
}

double TextViewport::fraction() const
{
    if (isAtStart())
        return 0;
    if (isAtEnd())
        return 1;
    auto way = contentHeight() - size_.height;
    return way > 0 ? std::clamp(contentOffset() / way, 0.0, 1.0) : 0;
}

double TextViewport::visibleFraction() const
{
    if (isAtStart() && isAtEnd())
        return 1;
    // Something is out of sight, whatever the estimate says.
    return std::min(0.999, size_.height / std::max(contentHeight(), 1.0));
}

bool TextViewport::reveal(Utf8Offset offset, CaretAffinity affinity)
{
    auto shown = caretRect(offset, affinity);
    if (shown && shown->minY() >= -tolerance && shown->maxY() <= size_.height + tolerance)
        return revealAlongRow(offset, affinity);
    auto shaped = shapedAt(offset);
    auto caret = shaped->layout.caretRect(shaped->inside(offset), affinity);
    auto seen = visibleRange();
    TextPlace top{shaped, caret.minY()};
    if (shaped->fragment.range.start == Utf8Offset{0} && caret.minY() <= tolerance)
        top.y = -insets_.top; // the first row shows with the inset above it
    auto room = size_.height - caret.height();
    auto near = std::max<std::int64_t>(2 * seen.size(), 4096);
    if (offset < seen.start - near || offset > seen.end + near)
        top.y -= room / 2;
    else if (offset >= seen.end || (shown && shown->maxY() > size_.height))
        top.y -= room;
    if (room < 0)
        top.y = caret.minY();
    bool didMove = setAnchor(top);
    return revealAlongRow(offset, affinity) || didMove;
}

} // namespace platform
