// SPDX-License-Identifier: MIT
#include "platform/foundation/NSMutableAttributedString.h"

#include "platform/foundation/AttributedStorage_p.h"

#include <utility>

namespace platform {

// A storage that no other text shares. Copies in other threads only ever let go of theirs, so a count of one
// stays one.
NSAttributedString::Storage& NSMutableAttributedString::ownStorage()
{
    if (!storage_)
        storage_ = std::make_shared<Storage>();
    else if (storage_.use_count() > 1)
        storage_ = std::make_shared<Storage>(*storage_);
    return *storage_;
}

void NSMutableAttributedString::append(NSAttributedString text)
{
    insert(std::move(text), range().end());
}

void NSMutableAttributedString::insert(NSAttributedString text, Utf16Offset at)
{
    replaceCharacters({at.value, 0}, std::move(text));
}

// `replacement` may be this very text: it holds the storage too, so this one changes a copy.
void NSMutableAttributedString::replaceCharacters(NSRange range, NSAttributedString replacement)
{
    NSMutableAttributedString piece(std::move(replacement)); // to reach its storage
    storage().bytesOf(range);
    if (range.isEmpty() && piece.isEmpty())
        return;
    ownStorage().replace(range, piece.string(), piece.storage().runsIn(piece.range()));
}

void NSMutableAttributedString::replaceCharacters(NSRange range, String replacement)
{
    storage().bytesOf(range);
    TextAttributes taken;
    if (!range.isEmpty() || (range.location == 0 && !isEmpty()))
        taken = attributes(range.start()).attributes;
    else if (range.location > 0)
        taken = attributes(range.start() - 1).attributes;
    replaceCharacters(range, NSAttributedString(std::move(replacement), std::move(taken)));
}

void NSMutableAttributedString::deleteCharacters(NSRange range)
{
    replaceCharacters(range, NSAttributedString());
}

template <class Change>
void NSMutableAttributedString::changeAttributes(NSRange range, Change change)
{
    storage().bytesOf(range); // checks
    if (range.isEmpty())
        return;
    auto& all = ownStorage();
    auto [first, last] = all.isolate(range);
    for (auto run = first; run < last; ++run)
        all.setRunAttributes(run, change(all.runs()[run].attributes));
    all.coalesce(first, last);
}

void NSMutableAttributedString::setAttributes(const TextAttributes& attributes, NSRange range)
{
    changeAttributes(range, [chosen = attributes](const TextAttributes&) { return chosen; });
}

void NSMutableAttributedString::addAttributes(const TextAttributes& attributes, NSRange range)
{
    changeAttributes(range, [added = attributes](TextAttributes had) {
        had.merge(added);
        return had;
    });
}

void NSMutableAttributedString::addAttribute(std::string_view key, AttributeValue value, NSRange range)
{
    TextAttributes added;
    added.set(key, std::move(value));
    addAttributes(added, range);
}

void NSMutableAttributedString::removeAttribute(std::string_view key, NSRange range)
{
    changeAttributes(range, [key = std::string(key)](TextAttributes had) {
        had.remove(key);
        return had;
    });
}

} // namespace platform
