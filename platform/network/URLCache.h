// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSObject.h"
#include "platform/network/CachedURLResponse.h"
#include "platform/network/URLRequest.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace platform {

class URLCacheStore;

// Answers of servers, kept in memory and on disk, each within a limit; what was used longest ago goes first. Found by a
// request's URL, without its fragment, and by the request fields that the answer depends on (Vary); only requests with
// the method GET have answers here. Several processes may share a directory. A file that is damaged counts as absent
// and is removed.
//
// Whether an answer is fresh is not asked here: see httpcaching. Any thread; no call waits for a disk but
// cachedResponse(), which may read one file.
class URLCache : public NSObject {
public:
    // 20 MB in memory, 200 MB on disk, in a directory of this program's among the user's caches.
    static const std::shared_ptr<URLCache>& shared();

    // Capacities in bytes; 0 keeps nothing there. Without a directory nothing is kept on disk. The directory is made at the
    // first need, readable to this user only; what is in it that no cache has written is left alone.
    URLCache(std::int64_t memoryCapacity, std::int64_t diskCapacity,
             std::optional<URL> directory = std::nullopt);
    ~URLCache() override; // waits for what is being written

    // Nothing when there is none, when the request's method is not GET, or when the one that is there was made for other
    // values of the request fields that it depends on.
    std::optional<CachedURLResponse> cachedResponse(const URLRequest& request);

    // Replaces what was there, and is found at once. Kept in memory unless it is larger than a quarter of that capacity,
    // and on disk likewise; refused where it is not allowed, where the method is not GET, and when it varies by
    // everything ("Vary: *"): then what was there goes all the same, as it is outdated. That a disk is full is no error:
    // the answer is not there.
    void storeCachedResponse(const CachedURLResponse& response, const URLRequest& request);

    // All answers for that URL, whatever they depend on.
    void removeCachedResponse(const URLRequest& request);
    void removeAllCachedResponses();

    // Bytes. A smaller capacity takes effect at once in memory, soon on disk.
    std::int64_t memoryCapacity() const;
    void setMemoryCapacity(std::int64_t bytes);
    std::int64_t diskCapacity() const;
    void setDiskCapacity(std::int64_t bytes);
    // Bodies, heads and what goes with them.
    std::int64_t currentMemoryUsage() const;
    // What the directory holds, of all processes. Reads the directory, after what waits to be written.
    std::int64_t currentDiskUsage() const;

private:
    // fixed after construction
    std::shared_ptr<URLCacheStore> store_;
};

} // namespace platform
