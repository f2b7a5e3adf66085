// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/DispatchQueue.h"
#include "platform/network/URLCacheDirectory_p.h"
#include "platform/network/URLCacheMemory_p.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace platform {

// What a URLCache is made of: the memory, the directory, and the changes on their way from the one to the other, on a queue
// of its own. What is on its way is found as if it had arrived. Any thread.
class URLCacheStore : public std::enable_shared_from_this<URLCacheStore> {
public:
    URLCacheStore(std::int64_t memoryCapacity, std::int64_t diskCapacity,
                  const std::optional<URL>& directory);

    std::optional<CachedURLResponse> find(const URLRequest& request);
    void store(const CachedURLResponse& response, const URLRequest& request);
    void remove(const std::string& key);
    void clear();

    std::int64_t memoryCapacity() const;
    void setMemoryCapacity(std::int64_t bytes);
    std::int64_t diskCapacity() const;
    void setDiskCapacity(std::int64_t bytes);
    std::int64_t memoryUsage() const;
    std::int64_t diskUsage();
    void waitUntilWritten();

private:
    struct OnItsWay {
        std::uint64_t change = 0;
        // of the answer
        std::vector<std::string> fields;
        std::string selection;
        std::optional<CachedURLResponse> response; // none: a removal
    };
    void write(const std::string& key, const URLRequest& request, OnItsWay change);
    void writeRemoval(const std::string& key);
    void arrived(const std::string& key, std::uint64_t change);
    bool mayGoToDisk(const std::string& key, const CachedURLResponse& response) const;

    // fixed after construction
    std::shared_ptr<DispatchQueue> queue_;
    // the queue's, but for find() and noteUse(); null: nothing is on disk
    std::unique_ptr<URLCacheDirectory> directory_;
    mutable std::mutex mutex_;
    // guarded by mutex_
    URLCacheMemory memory_;
    std::int64_t diskCapacity_;
    std::map<std::string, OnItsWay> onTheirWay_; // the last change of each key
    std::int64_t bytesOnTheirWay_ = 0;
    int clearsOnTheirWay_ = 0;
    std::uint64_t changes_ = 0;
};

} // namespace platform
