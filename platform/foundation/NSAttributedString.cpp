// SPDX-License-Identifier: MIT
#include "platform/foundation/NSAttributedString.h"

#include "platform/foundation/AttributedStorage_p.h"
#include "platform/foundation/Precondition.h"

#include <algorithm>
#include <utility>

namespace platform {

NSAttributedString::NSAttributedString(String text, TextAttributes attributes)
{
    if (!text.isEmpty())
        storage_ = std::make_shared<Storage>(std::move(text), std::move(attributes));
}

const NSAttributedString::Storage& NSAttributedString::storage() const
{
    static const Storage empty;
    return storage_ ? *storage_ : empty;
}

std::string_view NSAttributedString::string() const
{
    return storage().text();
}

std::int64_t NSAttributedString::length() const
{
    return storage_ ? storage_->length() : 0;
}

std::string_view NSAttributedString::string(NSRange range) const
{
    auto bytes = storage().bytesOf(range);
    return string().substr(bytes.begin, bytes.size());
}

NSAttributedString::Run NSAttributedString::attributes(Utf16Offset at) const
{
    auto& all = storage();
    all.requireUnit(at);
    auto run = all.runAt(at.value);
    return {all.runs()[run].attributes, NSRange::between({all.startOf(run)}, {all.runs()[run].end})};
}

NSAttributedString::AttributeRun NSAttributedString::attribute(std::string_view key, Utf16Offset at,
                                                               NSRange within) const
{
    auto& all = storage();
    all.requireUnit(at);
    all.requireRange(within);
    precondition(at >= within.start() && at < within.end(),
                 "the character asked for is outside of the range");
    auto& runs = all.runs();
    auto first = all.runAt(at.value);
    auto* value = runs[first].attributes.find(key);
    auto hasSame = [&](std::size_t run) {
        auto* other = runs[run].attributes.find(key);
        return value && other ? *value == *other : value == other;
    };
    auto last = first;
    while (all.startOf(first) > within.location && hasSame(first - 1))
        --first;
    while (runs[last].end < within.end().value && hasSame(last + 1))
        ++last;
    return {value,
            NSRange::between({std::max(all.startOf(first), within.location)},
                             {std::min(runs[last].end, within.end().value)})};
}

NSAttributedString NSAttributedString::attributedSubstring(NSRange from) const
{
    if (from == range())
        return *this;
    NSAttributedString piece;
    auto text = string(from);
    if (!text.empty()) {
        piece.storage_ = std::make_shared<Storage>();
        piece.storage_->replace({}, text, storage().runsIn(from));
    }
    return piece;
}

void NSAttributedString::enumerateAttributes(NSRange range, const RunBody& body) const
{
    storage().requireRange(range);
    auto keptAlive = storage_; // whatever `body` does to this text
    auto stop = false;
    for (auto at = range.location; at < range.end().value && !stop;) {
        auto& run = keptAlive->runs()[keptAlive->runAt(at)];
        auto end = std::min(run.end, range.end().value);
        body(run.attributes, NSRange::between({at}, {end}), stop);
        at = end;
    }
}

void NSAttributedString::enumerateAttribute(std::string_view key, NSRange range,
                                            const AttributeBody& body) const
{
    storage().requireRange(range);
    auto whole = *this; // whatever `body` does to this text
    auto stop = false;
    for (auto at = range.start(); at < range.end() && !stop;) {
        auto found = whole.attribute(key, at, NSRange::between(at, range.end()));
        body(found.value, found.range, stop);
        at = found.range.end();
    }
}

std::size_t NSAttributedString::hash() const
{
    auto& all = storage();
    auto value = std::hash<std::string_view>{}(all.text());
    for (auto& run : all.runs())
        value = value * 31 + static_cast<std::size_t>(run.end);
    return value;
}

bool operator==(const NSAttributedString& a, const NSAttributedString& b)
{
    if (a.storage_ == b.storage_)
        return true;
    auto& first = a.storage();
    auto& second = b.storage();
    return first.text() == second.text() && first.runs() == second.runs();
}

} // namespace platform
