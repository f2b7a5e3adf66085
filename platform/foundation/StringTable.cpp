// SPDX-License-Identifier: MIT
#include "platform/foundation/StringTable.h"

#include "platform/foundation/FileReading_p.h"
#include "platform/foundation/StringTableParser_p.h"

#include <utility>

namespace platform {

ParsedStringTable StringTable::parse(std::string_view bytes, const StringTableLimits& limits)
{
    StringTableParser parser(limits);
    parser.parse(bytes);
    return std::move(parser).finish();
}

Result<ParsedStringTable> StringTable::read(const URL& file, const StringTableLimits& limits)
{
    // One byte above the limit is enough to tell that it is passed.
    auto bytes = TRY(readFileHead(file, limits.bytes + 1));
    return parse(bytes, limits);
}

const std::string* StringTable::find(std::string_view key) const
{
    auto found = index_.find(key);
    return found == index_.end() ? nullptr : &entries_[found->second].value;
}

std::size_t StringTable::add(StringTableEntry entry)
{
    auto [place, isNew] = index_.try_emplace(entry.key, entries_.size());
    if (isNew) {
        entries_.push_back(std::move(entry));
        return 0;
    }
    auto& earlier = entries_[place->second];
    return std::exchange(earlier, std::move(entry)).line;
}

} // namespace platform
