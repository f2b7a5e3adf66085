// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/URL.h"
#include "platform/network/CachedURLResponse.h"
#include "platform/network/URLCacheEntry_p.h"
#include "platform/network/URLRequest.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// The part of a URL cache that is on disk: a file for each answer, named by a digest of its URL; where answers depend on
// request fields, a file that says which, and one for each variant, named by both. Each file is written beside its place
// and renamed, so that any number of processes may read, write and remove at once without a lock: whoever comes last
// wins, and nobody sees a part. A file's time of modification is when it was last used.
//
// find() is for any thread; what changes the directory for one at a time. What the disk refuses is not kept: a cache may always be empty.
class URLCacheDirectory {
public:
    explicit URLCacheDirectory(const URL& directory);

    struct Found {
        CachedURLResponse response;
        std::vector<std::string> fields; // that it depends on
    };
    // Reads a file or two. One that is damaged, or of another URL, is removed.
    std::optional<Found> find(const std::string& key, const URLRequest& request) const;

    // An answer for `key` was used that is still in memory. Any thread.
    void noteUse(const std::string& key);

    // Each may remove what was used longest ago, to keep within `capacity` bytes.
    void store(const std::string& key, const URLRequest& request, const std::vector<std::string>& fields,
               const CachedURLResponse& response, std::int64_t capacity);
    void trim(std::int64_t capacity);

    void remove(const std::string& key);
    void clear();
    // Of all files that caches have written here.
    std::int64_t usage() const;

private:
    struct File {
        std::string name;
        std::int64_t size;
        std::int64_t lastUse; // nanoseconds
    };
    std::vector<File> files() const;
    std::string path(std::string_view name) const;
    // The record in a file of the directory; what is damaged is removed.
    URLCacheRecord read(const std::string& name) const;
    bool write(const std::string& name, std::string_view head, std::string_view body);
    void writeVariant(const std::string& key, const URLRequest& request,
                      const std::vector<std::string>& fields, const CachedURLResponse& response);
    void passOnUses(std::vector<File>& files);

    // fixed after construction
    std::string directory_;
    // one thread at a time
    std::optional<std::int64_t> usageAtScan_;
    std::int64_t writtenSinceScan_ = 0;
    std::mutex mutex_;
    std::set<std::string> used_; // guarded by mutex_; keys
};

} // namespace platform
