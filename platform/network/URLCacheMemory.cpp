// SPDX-License-Identifier: MIT
#include "platform/network/URLCacheMemory_p.h"

#include "platform/network/HTTPURLResponse.h"

namespace platform {

namespace {

// Of the maps, lists and records around an answer, and around each of its fields.
constexpr std::int64_t costOfEntry = 512;
constexpr std::int64_t costOfField = 96;

} // namespace

std::int64_t urlCacheCost(std::string_view key, const CachedURLResponse& response)
{
    auto cost = costOfEntry + static_cast<std::int64_t>(2 * key.size() + response.data().size());
    if (auto http = dynamic_cast<const HTTPURLResponse*>(response.response().get()))
        for (const auto& [name, value] : http->allHeaderFields())
            cost += costOfField + static_cast<std::int64_t>(name.size() + value.size());
    return cost;
}

const std::vector<std::string>* URLCacheMemory::fields(const std::string& key) const
{
    auto found = byKey_.find(key);
    return found == byKey_.end() ? nullptr : &found->second.fields;
}

std::optional<CachedURLResponse> URLCacheMemory::find(const std::string& key, const std::string& selection)
{
    auto variants = byKey_.find(key);
    if (variants == byKey_.end())
        return std::nullopt;
    auto found = variants->second.bySelection.find(selection);
    if (found == variants->second.bySelection.end())
        return std::nullopt;
    entries_.splice(entries_.begin(), entries_, found->second);
    return found->second->response;
}

void URLCacheMemory::insert(const std::string& key, const std::vector<std::string>& fields,
                            const std::string& selection, const CachedURLResponse& response)
{
    if (auto former = this->fields(key); former && *former != fields)
        remove(key);
    removeVariant(key, selection);
    auto cost = urlCacheCost(key, response);
    if (cost > capacity_ / 4)
        return;
    entries_.push_front({key, selection, response, cost});
    auto& variants = byKey_[key];
    variants.fields = fields;
    variants.bySelection[selection] = entries_.begin();
    usage_ += cost;
    trim();
}

void URLCacheMemory::remove(const std::string& key)
{
    auto variants = byKey_.find(key);
    if (variants == byKey_.end())
        return;
    for (const auto& [selection, entry] : variants->second.bySelection) {
        usage_ -= entry->cost;
        entries_.erase(entry);
    }
    byKey_.erase(variants);
}

void URLCacheMemory::removeVariant(const std::string& key, const std::string& selection)
{
    auto variants = byKey_.find(key);
    if (variants == byKey_.end())
        return;
    auto& bySelection = variants->second.bySelection;
    auto found = bySelection.find(selection);
    if (found == bySelection.end())
        return;
    usage_ -= found->second->cost;
    entries_.erase(found->second);
    bySelection.erase(found);
    if (bySelection.empty())
        byKey_.erase(variants);
}

void URLCacheMemory::clear()
{
    byKey_.clear();
    entries_.clear();
    usage_ = 0;
}

void URLCacheMemory::setCapacity(std::int64_t capacity)
{
    capacity_ = capacity;
    trim();
}

void URLCacheMemory::trim()
{
    while (usage_ > capacity_ && !entries_.empty()) {
        auto key = entries_.back().key; // copies: the entry goes with them
        auto selection = entries_.back().selection;
        removeVariant(key, selection);
    }
}

} // namespace platform
