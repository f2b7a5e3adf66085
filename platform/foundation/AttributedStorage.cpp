// SPDX-License-Identifier: MIT
#include "platform/foundation/AttributedStorage_p.h"

#include "platform/foundation/Precondition.h"

#include <algorithm>
#include <iterator>

namespace platform {

namespace {

std::string described(NSRange range)
{
    return "{" + std::to_string(range.location) + ", " + std::to_string(range.length) + "}";
}

} // namespace

NSAttributedString::Storage::Storage(String text, TextAttributes attributes)
    : shared_(std::move(text))
    , index_(shared_.utf8())
{
    if (length() > 0)
        runs_.push_back({length(), std::move(attributes)});
}

std::size_t NSAttributedString::Storage::runAt(std::int64_t at) const
{
    return static_cast<std::size_t>(std::ranges::upper_bound(runs_, at, {}, &Run::end) - runs_.begin());
}

void NSAttributedString::Storage::requireRange(NSRange range) const
{
    // Without adding, which may overflow.
    if (range.location < 0 || range.length < 0 || range.location > length()
        || range.length > length() - range.location)
        preconditionFailure("the range " + described(range) + " is not in the text, which has "
                            + std::to_string(length()) + " UTF-16 units");
}

void NSAttributedString::Storage::requireUnit(Utf16Offset at) const
{
    if (at.value < 0 || at.value >= length())
        preconditionFailure("there is no character at " + std::to_string(at.value)
                            + " in the text, which has " + std::to_string(length()) + " UTF-16 units");
}

NSAttributedString::Storage::ByteSpan NSAttributedString::Storage::bytesOf(NSRange range) const
{
    requireRange(range);
    auto begin = index_.place(text(), range.start());
    auto end = range.isEmpty() ? begin : index_.place(text(), range.end());
    if (!begin.isBoundary || !end.isBoundary)
        preconditionFailure("the range " + described(range)
                            + " cuts a character of two UTF-16 units; begin and end between characters");
    return {begin.byte, end.byte};
}

std::vector<NSAttributedString::Storage::Run> NSAttributedString::Storage::runsIn(NSRange range) const
{
    std::vector<Run> pieces;
    if (range.isEmpty())
        return pieces;
    auto end = range.end().value;
    for (auto run = runAt(range.location);; ++run) {
        pieces.push_back({std::min(runs_[run].end, end) - range.location, runs_[run].attributes});
        if (runs_[run].end >= end)
            return pieces;
    }
}

void NSAttributedString::Storage::replaceText(ByteSpan bytes, std::string_view text)
{
    if (!isOwned_) {
        owned_.assign(shared_.utf8());
        isOwned_ = true;
        shared_ = {};
    }
    owned_.replace(bytes.begin, bytes.size(), text);
    index_.noteReplacement(owned_, bytes.begin, text);
}

std::size_t NSAttributedString::Storage::cutAt(std::int64_t at)
{
    if (at == length())
        return runs_.size();
    auto run = runAt(at);
    if (startOf(run) == at)
        return run;
    runs_.insert(runs_.begin() + static_cast<std::ptrdiff_t>(run), {at, runs_[run].attributes});
    return run + 1;
}

std::pair<std::size_t, std::size_t> NSAttributedString::Storage::isolate(NSRange range)
{
    auto first = cutAt(range.location);
    return {first, range.isEmpty() ? first : cutAt(range.end().value)};
}

void NSAttributedString::Storage::coalesce(std::size_t first, std::size_t last)
{
    auto begin = runs_.begin() + static_cast<std::ptrdiff_t>(first > 0 ? first - 1 : 0);
    auto end = runs_.begin() + static_cast<std::ptrdiff_t>(std::min(last + 1, runs_.size()));
    if (begin == end)
        return;
    auto kept = begin;
    for (auto next = std::next(begin); next != end; ++next) {
        if (next->attributes == kept->attributes)
            kept->end = next->end;
        else if (++kept != next)
            *kept = std::move(*next);
    }
    runs_.erase(std::next(kept), end);
}

void NSAttributedString::Storage::replace(NSRange range, std::string_view text, std::vector<Run> inserted)
{
    auto bytes = bytesOf(range);
    auto [first, last] = isolate(range);
    auto before = length();
    replaceText(bytes, text);
    auto growth = length() - before;
    auto count = inserted.size();
    for (auto& run : inserted)
        run.end += range.location;
    for (auto run = last; run < runs_.size(); ++run)
        runs_[run].end += growth;
    auto place = runs_.erase(runs_.begin() + static_cast<std::ptrdiff_t>(first),
                             runs_.begin() + static_cast<std::ptrdiff_t>(last));
    runs_.insert(place, std::move_iterator(inserted.begin()), std::move_iterator(inserted.end()));
    coalesce(first, first + count);
}

} // namespace platform
