// SPDX-License-Identifier: MIT
// What is seen of a text, and where things are in it.
#include "platform/uikit/text/TextViewport.h"

#include <algorithm>
#include <cmath>

namespace platform {

const std::vector<VisibleFragment>& TextViewport::visible() const
{
    if (isVisibleValid_)
        return visible_;
    visible_.clear();
    auto& top = anchor();
    auto y = std::round(-top.y * scale_) / scale_;
    for (auto shaped = top.shaped; shaped; shaped = after(*shaped)) {
        // Rows that do not wrap begin at the edge where their text does.
        auto& layout = shaped->layout;
        bool beginsRight = style().lineBreak == LineBreak::none && layout.isRightToLeft();
        auto x = beginsRight ? textWidth() - layout.size().width : 0;
        visible_.push_back({shaped, {insets_.left + x - rowsOffset_, y}});
        y += shaped->height();
        if (y >= size_.height)
            break;
    }
    isVisibleValid_ = true;
    return visible_;
}

TextRange TextViewport::visibleRange() const
{
    auto& fragments = visible();
    return {fragments.front().shaped->fragment.range.start, fragments.back().shaped->fragment.range.end};
}

const VisibleFragment* TextViewport::find(Utf8Offset offset) const
{
    auto& fragments = visible();
    auto after = std::ranges::upper_bound(
        fragments, offset, {}, [](const VisibleFragment& each) { return each.shaped->fragment.range.start; });
    if (after == fragments.begin())
        return nullptr;
    auto& found = *(after - 1);
    auto& fragment = found.shaped->fragment;
    // The end of the text belongs to the last fragment.
    bool holds = offset < fragment.range.end || (offset == text_.end() && fragment.lineEndSize == 0);
    return holds ? &found : nullptr;
}

TextViewport::Hit TextViewport::hit(CGPoint point) const
{
    auto& fragments = visible();
    auto below = std::ranges::find_if(fragments, [&](const VisibleFragment& each) {
        return point.y < each.origin.y + each.shaped->height();
    });
    auto& found = below == fragments.end() ? fragments.back() : *below;
    auto hit = found.shaped->layout.hit(point - found.origin);
    return {found.shaped->outside(hit.offset), hit.affinity};
}

std::optional<CGRect> TextViewport::caretRect(Utf8Offset offset, CaretAffinity affinity) const
{
    auto* found = find(offset);
    if (!found)
        return std::nullopt;
    auto rect = found->shaped->layout.caretRect(found->shaped->inside(offset), affinity);
    return rect.offsetBy(found->origin.x, found->origin.y);
}

std::vector<CGRect> TextViewport::selectionRects(TextRange range) const
{
    std::vector<CGRect> rects;
    for (auto& [shaped, origin] : visible()) {
        auto& fragment = shaped->fragment;
        auto part = range.intersection(fragment.range);
        if (part.isEmpty())
            continue;
        ByteRange inside{shaped->inside(part.start), shaped->inside(part.end)};
        if (!inside.isEmpty()) {
            for (auto& rect : shaped->layout.selectionRects(inside))
                rects.push_back(rect.offsetBy(origin.x, origin.y));
        }
        if (fragment.lineEndSize > 0 && part.end == fragment.range.end) {
            auto width = cache_.style().font.columnWidth() / 2;
            auto caret = shaped->layout.caretRect(shaped->inside(fragment.textEnd()));
            auto x = shaped->layout.isRightToLeft() ? caret.minX() - width : caret.minX();
            rects.push_back(CGRect::make(x + origin.x, caret.minY() + origin.y, width, caret.height()));
        }
    }
    return rects;
}

} // namespace platform
