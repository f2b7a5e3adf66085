// SPDX-License-Identifier: MIT
#include "platform/network/URLCacheStore_p.h"

#include "platform/network/HTTPCaching.h"
#include "platform/network/URLCacheKey_p.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

// So many bytes may wait for the disk; what comes while it cannot keep up stays in memory only.
constexpr std::int64_t largestBacklog = 32LL * 1024 * 1024;

} // namespace

URLCacheStore::URLCacheStore(std::int64_t memoryCapacity, std::int64_t diskCapacity,
                             const std::optional<URL>& directory)
    : queue_(DispatchQueue::make("platform.url-cache"))
    , directory_(directory ? std::make_unique<URLCacheDirectory>(*directory) : nullptr)
    , memory_(std::max<std::int64_t>(memoryCapacity, 0))
    , diskCapacity_(std::max<std::int64_t>(diskCapacity, 0))
{
}

std::optional<CachedURLResponse> URLCacheStore::find(const URLRequest& request)
{
    auto key = urlCacheKey(request);
    if (key.empty())
        return std::nullopt;
    std::unique_lock lock(mutex_);
    if (auto fields = memory_.fields(key))
        if (auto found = memory_.find(key, httpcaching::selection(request, *fields))) {
            if (directory_)
                directory_->noteUse(key);
            return found;
        }
    if (!directory_ || diskCapacity_ == 0)
        return std::nullopt;
    if (auto change = onTheirWay_.find(key); change != onTheirWay_.end()) {
        const auto& [number, fields, selection, response] = change->second;
        if (!response || selection == httpcaching::selection(request, fields))
            return response;
    } else if (clearsOnTheirWay_ > 0) {
        return std::nullopt;
    }
    auto changesBefore = changes_;
    lock.unlock();
    auto found = directory_->find(key, request);
    if (!found)
        return std::nullopt;
    lock.lock();
    if (changes_ == changesBefore) // else it may be outdated already
        memory_.insert(key, found->fields, httpcaching::selection(request, found->fields), found->response);
    return std::move(found->response);
}

void URLCacheStore::store(const CachedURLResponse& response, const URLRequest& request)
{
    auto key = urlCacheKey(request);
    if (key.empty())
        return;
    auto fields = httpcaching::selectingFields(request, *response.response());
    if (!fields || response.storagePolicy() == URLCacheStoragePolicy::notAllowed)
        return remove(key);
    auto selection = httpcaching::selection(request, *fields);
    std::lock_guard lock(mutex_);
    ++changes_;
    memory_.insert(key, *fields, selection, response);
    if (!directory_)
        return;
    if (mayGoToDisk(key, response))
        write(key, request, {changes_, *std::move(fields), std::move(selection), response});
    else
        writeRemoval(key);
}

// Called with the lock held, as are the next two: the order on the queue is that of the changes in memory.
bool URLCacheStore::mayGoToDisk(const std::string& key, const CachedURLResponse& response) const
{
    auto cost = urlCacheCost(key, response);
    return response.storagePolicy() == URLCacheStoragePolicy::allowed && cost <= diskCapacity_ / 4
        && bytesOnTheirWay_ + cost <= largestBacklog;
}

void URLCacheStore::write(const std::string& key, const URLRequest& request, OnItsWay change)
{
    auto cost = urlCacheCost(key, *change.response);
    bytesOnTheirWay_ += cost;
    onTheirWay_[key] = change;
    queue_->async([self = shared_from_this(), key, request, cost, change = std::move(change)] {
        self->directory_->store(key, request, change.fields, *change.response, self->diskCapacity());
        {
            std::lock_guard lock(self->mutex_);
            self->bytesOnTheirWay_ -= cost;
        }
        self->arrived(key, change.change);
    });
}

void URLCacheStore::writeRemoval(const std::string& key)
{
    onTheirWay_[key] = {changes_, {}, {}, std::nullopt};
    queue_->async([self = shared_from_this(), key, change = changes_] {
        self->directory_->remove(key);
        self->arrived(key, change);
    });
}

void URLCacheStore::arrived(const std::string& key, std::uint64_t change)
{
    std::lock_guard lock(mutex_);
    if (auto found = onTheirWay_.find(key); found != onTheirWay_.end() && found->second.change == change)
        onTheirWay_.erase(found);
}

void URLCacheStore::remove(const std::string& key)
{
    if (key.empty())
        return;
    std::lock_guard lock(mutex_);
    ++changes_;
    memory_.remove(key);
    if (directory_)
        writeRemoval(key);
}

void URLCacheStore::clear()
{
    std::lock_guard lock(mutex_);
    ++changes_;
    memory_.clear();
    onTheirWay_.clear();
    if (!directory_)
        return;
    ++clearsOnTheirWay_;
    queue_->async([self = shared_from_this()] {
        self->directory_->clear();
        std::lock_guard relock(self->mutex_);
        --self->clearsOnTheirWay_;
    });
}

std::int64_t URLCacheStore::memoryCapacity() const
{
    std::lock_guard lock(mutex_);
    return memory_.capacity();
}

void URLCacheStore::setMemoryCapacity(std::int64_t bytes)
{
    std::lock_guard lock(mutex_);
    memory_.setCapacity(std::max<std::int64_t>(bytes, 0));
}

std::int64_t URLCacheStore::diskCapacity() const
{
    std::lock_guard lock(mutex_);
    return diskCapacity_;
}

void URLCacheStore::setDiskCapacity(std::int64_t bytes)
{
    std::lock_guard lock(mutex_);
    diskCapacity_ = std::max<std::int64_t>(bytes, 0);
    if (directory_)
        queue_->async([self = shared_from_this()] { self->directory_->trim(self->diskCapacity()); });
}

std::int64_t URLCacheStore::memoryUsage() const
{
    std::lock_guard lock(mutex_);
    return memory_.usage();
}

std::int64_t URLCacheStore::diskUsage()
{
    return directory_ ? queue_->sync([this] { return directory_->usage(); }) : 0;
}

void URLCacheStore::waitUntilWritten()
{
    if (directory_ && !queue_->isCurrent())
        queue_->sync([] { });
}

} // namespace platform
