// SPDX-License-Identifier: MIT
#include "platform/foundation/TextAttributes.h"

#include <algorithm>

namespace platform {

namespace {

auto placeOf(auto& entries, std::string_view key)
{
    return std::ranges::lower_bound(entries, key, {},
                                    [](const auto& entry) { return std::string_view(entry.first); });
}

} // namespace

TextAttributes::TextAttributes(std::initializer_list<Entry> entries)
{
    for (auto& [key, value] : entries)
        set(key, value);
}

const std::vector<TextAttributes::Entry>& TextAttributes::entries() const
{
    static const std::vector<Entry> none;
    return entries_ ? *entries_ : none;
}

const AttributeValue* TextAttributes::find(std::string_view key) const
{
    auto& all = entries();
    auto place = placeOf(all, key);
    return place != all.end() && place->first == key ? &place->second : nullptr;
}

// A vector of this value's own: what another value shares is copied. Copies in other threads only ever let go
// of theirs, so a count of one stays one.
std::vector<TextAttributes::Entry>& TextAttributes::detached()
{
    if (!entries_ || entries_.use_count() > 1)
        entries_ = std::make_shared<std::vector<Entry>>(entries());
    return *entries_;
}

void TextAttributes::set(std::string_view key, AttributeValue value)
{
    if (auto* old = find(key); old && *old == value)
        return;
    auto& all = detached();
    auto place = placeOf(all, key);
    if (place != all.end() && place->first == key)
        place->second = std::move(value);
    else
        all.emplace(place, key, std::move(value));
}

void TextAttributes::remove(std::string_view key)
{
    if (!find(key))
        return;
    auto& all = detached();
    all.erase(placeOf(all, key));
    if (all.empty())
        entries_ = nullptr;
}

void TextAttributes::merge(const TextAttributes& others)
{
    if (isEmpty()) {
        *this = others;
        return;
    }
    for (auto& [key, value] : others.entries())
        set(key, value);
}

} // namespace platform
