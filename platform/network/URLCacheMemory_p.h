// SPDX-License-Identifier: MIT
#pragma once

#include "platform/network/CachedURLResponse.h"

#include <cstdint>
#include <list>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace platform {

// The bytes that an answer takes, with its head and what goes with it.
std::int64_t urlCacheCost(std::string_view key, const CachedURLResponse& response);

// The part of a URL cache that is in memory. Its owner guards it.
class URLCacheMemory {
public:
    explicit URLCacheMemory(std::int64_t capacity)
        : capacity_(capacity)
    {
    }

    // The request fields that the answers for `key` depend on; null when there are none.
    const std::vector<std::string>* fields(const std::string& key) const;
    std::optional<CachedURLResponse> find(const std::string& key, const std::string& selection);

    // Answers for `key` that depend on other fields go, and so does the one in that place, also when the new one is too
    // large to be kept.
    void insert(const std::string& key, const std::vector<std::string>& fields, const std::string& selection,
                const CachedURLResponse& response);
    void remove(const std::string& key);
    void clear();

    std::int64_t usage() const { return usage_; }
    std::int64_t capacity() const { return capacity_; }
    void setCapacity(std::int64_t capacity);

private:
    struct Entry {
        std::string key;
        std::string selection;
        CachedURLResponse response;
        std::int64_t cost;
    };
    using Entries = std::list<Entry>; // the one used last first
    struct Variants {
        std::vector<std::string> fields;
        std::map<std::string, Entries::iterator> bySelection; // never empty
    };
    void trim();
    void removeVariant(const std::string& key, const std::string& selection);

    std::int64_t capacity_;
    std::int64_t usage_ = 0;
    Entries entries_;
    std::unordered_map<std::string, Variants> byKey_;
};

} // namespace platform
