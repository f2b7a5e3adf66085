// SPDX-License-Identifier: MIT
#include "platform/network/URLCache.h"

#include "platform/foundation/Bundle.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/ProcessInfo.h"
#include "platform/network/URLCacheKey_p.h"
#include "platform/network/URLCacheStore_p.h"

namespace platform {

namespace {

constexpr std::int64_t megabyte = 1024 * 1024;

// Nothing when this user has no place for caches.
std::optional<URL> sharedDirectory()
{
    auto caches = FileManager::defaultManager().urls(SearchPathDirectory::caches, SearchPathDomain::user);
    if (caches.empty())
        return std::nullopt;
    auto program = Bundle::main()->bundleIdentifier().value_or(ProcessInfo::processInfo().processName());
    return caches.front().appendingPathComponent(program).appendingPathComponent("url-cache");
}

} // namespace

const std::shared_ptr<URLCache>& URLCache::shared()
{
    static const auto cache = std::make_shared<URLCache>(20 * megabyte, 200 * megabyte, sharedDirectory());
    return cache;
}

URLCache::URLCache(std::int64_t memoryCapacity, std::int64_t diskCapacity, std::optional<URL> directory)
    : store_(std::make_shared<URLCacheStore>(memoryCapacity, diskCapacity, directory))
{
}

URLCache::~URLCache()
{
    store_->waitUntilWritten();
}

std::optional<CachedURLResponse> URLCache::cachedResponse(const URLRequest& request)
{
    return store_->find(request);
}

void URLCache::storeCachedResponse(const CachedURLResponse& response, const URLRequest& request)
{
    store_->store(response, request);
}

void URLCache::removeCachedResponse(const URLRequest& request)
{
    store_->remove(urlCacheKey(request));
}

void URLCache::removeAllCachedResponses()
{
    store_->clear();
}

std::int64_t URLCache::memoryCapacity() const
{
    return store_->memoryCapacity();
}

void URLCache::setMemoryCapacity(std::int64_t bytes)
{
    store_->setMemoryCapacity(bytes);
}

std::int64_t URLCache::diskCapacity() const
{
    return store_->diskCapacity();
}

void URLCache::setDiskCapacity(std::int64_t bytes)
{
    store_->setDiskCapacity(bytes);
}

std::int64_t URLCache::currentMemoryUsage() const
{
    return store_->memoryUsage();
}

std::int64_t URLCache::currentDiskUsage() const
{
    return store_->diskUsage();
}

} // namespace platform
