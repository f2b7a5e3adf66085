// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSCache.h"

#include <concepts>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <typeinfo>
#include <utility>

namespace zelk {

template <class Key>
concept CacheKey = std::equality_comparable<Key> && std::copyable<Key> && requires(const Key& key) {
    { std::hash<Key>{}(key) } -> std::convertible_to<std::size_t>;
};

// Values of any type under keys of any hashable type, as many as the limits and the system's memory allow; which go
// first is the platform cache's decision. A copy is a second handle on the same store: values, limits, name and callback
// are shared. Any thread, any mix of calls. Values are handed out as copies, made with no lock held.
template <CacheKey Key, class Value>
class Cache {
public:
    using WillEvictValue = std::function<void(const Value&)>;

    Cache() = default;
    // Without moves: a moved-from cache would be none.
    Cache(const Cache&) = default;
    Cache& operator=(const Cache&) = default;

    // Names the cache to people; empty at first.
    std::string name() const { return cache_->name(); }
    void setName(std::string name) { cache_->setName(std::move(name)); }

    // How many values it aims to hold; 0, the default, is no limit.
    long countLimit() const { return cache_->countLimit(); }
    void setCountLimit(long limit) { cache_->setCountLimit(limit); }
    // How much cost in all it aims to hold; 0, the default, is no limit.
    long totalCostLimit() const { return cache_->totalCostLimit(); }
    void setTotalCostLimit(long limit) { cache_->setTotalCostLimit(limit); }

    // Receives each value that leaves by the limits, by memory pressure or by removal, before its entry is gone, on the
    // thread that made it leave, with no lock held: it may call the cache. A value that is replaced is not reported.
    // Absent at first; a new one takes effect for the next value that leaves.
    WillEvictValue willEvictValue() const { return delegate_->willEvictValue(); }
    void setWillEvictValue(WillEvictValue callback)
    {
        delegate_->setWillEvictValue(std::move(callback), *cache_, delegate_);
    }

    // Replaces the value under an equal key. The cost counts against totalCostLimit.
    void setValue(Value value, const Key& key, long cost = 0)
    {
        cache_->setEntry(std::make_unique<Stored>(key, std::move(value)), WrappedKey(key), cost);
    }
    // Nothing when there is none: never stored, removed, or evicted.
    std::optional<Value> value(const Key& key) const
    {
        std::optional<Value> value;
        // Nobody else sets this cache's entries.
        auto stored = [](const platform::NSCacheEntry& entry) -> auto& {
            return static_cast<const Stored&>(entry);
        };
        cache_->readEntry(
            std::hash<Key>{}(key), [&](const auto& entry) { return stored(entry).key == key; },
            [&](const auto& entry) { value.emplace(stored(entry).value); });
        return value;
    }
    // Does nothing when there is none.
    void removeValue(const Key& key) { cache_->removeObject(WrappedKey(key)); }
    void removeAllValues() { cache_->removeAllObjects(); }

private:
    // A key as the platform's cache knows keys, for the length of a call.
    class WrappedKey final : public platform::NSObject {
    public:
        WrappedKey() = delete;
        explicit WrappedKey(const Key& key)
            : key_(key)
        {
        }

        std::size_t hash() const override { return std::hash<Key>{}(key_); }
        bool isEqual(const platform::NSObject& other) const override { return isKey(other, key_); }
        // Whether the object is a wrapped key that is equal to this one.
        static bool isKey(const platform::NSObject& object, const Key& key)
        {
            // Nothing derives from this class: comparing types costs a tenth of a cast that searches a hierarchy.
            return typeid(object) == typeid(WrappedKey) && static_cast<const WrappedKey&>(object).key_ == key;
        }

    private:
        const Key& key_;
    };

    // A value as the platform's cache reports objects, for the length of a report.
    struct Entry final : platform::NSObject {
        explicit Entry(const Value& itsValue)
            : value(itsValue)
        {
        }

        const Value& value;
    };

    // The key and the value of an insertion, in one piece of memory.
    struct Stored final : platform::NSCacheEntry {
        Stored(const Key& itsKey, Value itsValue)
            : key(itsKey)
            , value(std::move(itsValue))
        {
        }

        bool hasKey(const platform::NSObject& other) const override { return WrappedKey::isKey(other, key); }
        void report(platform::NSCacheDelegate& delegate, platform::NSCache& cache) const override
        {
            Entry entry(value);
            delegate.cacheWillEvictObject(cache, entry);
        }

        const Key key;
        const Value value;
    };

    class Delegate final : public platform::NSObject, public platform::NSCacheDelegate {
    public:
        WillEvictValue willEvictValue() const
        {
            std::lock_guard lock(mutex_);
            return willEvictValue_;
        }
        // Is the cache's delegate only while it has something to do: evicting is cheaper without one.
        void setWillEvictValue(WillEvictValue callback, platform::NSCache& cache,
                               const std::shared_ptr<Delegate>& self)
        {
            std::lock_guard lock(mutex_);
            willEvictValue_.swap(callback);
            cache.setDelegate(willEvictValue_ ? self : nullptr);
        }
        void cacheWillEvictObject(platform::NSCache&, platform::NSObject& object) override
        {
            auto* entry = dynamic_cast<const Entry*>(&object);
            if (!entry)
                return;
            if (auto callback = willEvictValue())
                callback(entry->value);
        }

    private:
        mutable std::mutex mutex_;
        WillEvictValue willEvictValue_; // guarded by mutex_
    };

    std::shared_ptr<platform::NSCache> cache_ = std::make_shared<platform::NSCache>();
    std::shared_ptr<Delegate> delegate_ = std::make_shared<Delegate>();
};

} // namespace zelk
