// SPDX-License-Identifier: MIT
#include "platform/uikit/text/LineLayoutCache.h"

#include "platform/foundation/Precondition.h"
#include "platform/uikit/text/SelfCheck.h"

#include <algorithm>
#include <vector>

namespace platform {

namespace {

constexpr std::size_t entryLimit = 512;
constexpr std::int64_t byteLimit = 512 * 1024;

} // namespace

std::size_t ShapedFragment::inside(Utf8Offset offset) const
{
    auto clamped = std::clamp(offset, fragment.range.start, fragment.textEnd());
    return static_cast<std::size_t>(clamped - fragment.range.start);
}

LineLayoutCache::LineLayoutCache(const TextBuffer& text)
    : text_(text)
{
}

void LineLayoutCache::setStyle(const TextStyle& style, CGFloat width)
{
    if (style == style_ && width == width_)
        return;
    style_ = style;
    width_ = width;
    forgetAll();
}

void LineLayoutCache::forgetAll()
{
    entries_.clear();
    bytes_ = 0;
}

void LineLayoutCache::handleEdit(Utf8Offset at)
{
    // All cuts of the edited line may fall elsewhere now, and what stands behind it has moved.
    auto line = text_.lineStart(text_.lineContaining(at));
    std::erase_if(entries_, [&](const auto& entry) {
        auto range = entry.second.shaped->fragment.range;
        if (range.end <= line)
            return false;
        bytes_ -= range.size();
        return true;
    });
}

std::shared_ptr<const ShapedFragment> LineLayoutCache::shape(const TextFragment& fragment)
{
    auto& entry = entries_[fragment.range.start.value];
    entry.lastUse = ++uses_;
    if (entry.shaped && entry.shaped->fragment == fragment) {
        if constexpr (provesCaches)
            prove(*entry.shaped);
        return entry.shaped;
    }
    if (entry.shaped)
        bytes_ -= entry.shaped->fragment.range.size();
    auto shaped = make(fragment);
    entry.shaped = shaped;
    bytes_ += fragment.range.size();
    ++shapingCount_;
    if (entries_.size() > entryLimit || bytes_ > byteLimit)
        evict();
    return shaped;
}

std::shared_ptr<const ShapedFragment> LineLayoutCache::make(const TextFragment& fragment) const
{
    std::string scratch;
    auto style = style_;
    if (!fragment.beginsLine && style.baseDirection == BaseDirection::automatic) {
        // The direction of a line is decided at its beginning, which is in another fragment.
        auto line = text_.lineStart(fragment.line);
        auto beginning = text_.view({line, std::min(line + 1024, fragment.range.start)}, scratch);
        style.baseDirection = TextLayout(beginning, style).isRightToLeft() ? BaseDirection::rightToLeft
                                                                           : BaseDirection::leftToRight;
    }
    auto bytes = text_.view(fragment.textRange(), scratch);
    bool wraps = style.lineBreak != LineBreak::none;
    return std::make_shared<const ShapedFragment>(fragment,
                                                  TextLayout(bytes, style, wraps ? width_ : unlimitedWidth));
}

void LineLayoutCache::prove(const ShapedFragment& cached) const
{
    static SelfCheck check;
    if (!check.isDue())
        return;
    auto fresh = make(cached.fragment);
    precondition(fresh->layout.size() == cached.layout.size()
                     && fresh->layout.lines().size() == cached.layout.lines().size(),
                 "a cached layout is what shaping gives now");
}

void LineLayoutCache::evict()
{
    std::vector<std::pair<std::uint64_t, std::int64_t>> byUse;
    for (auto& [start, entry] : entries_)
        byUse.emplace_back(entry.lastUse, start);
    std::ranges::sort(byUse);
    // An eighth of them: to give up hundreds at once would be felt in that frame.
    for (std::size_t i = 0; i < byUse.size() / 8; ++i) {
        auto it = entries_.find(byUse[i].second);
        bytes_ -= it->second.shaped->fragment.range.size();
        entries_.erase(it);
    }
}

} // namespace platform
