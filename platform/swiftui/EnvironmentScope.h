// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ChangeSource.h"

#include <any>
#include <map>
#include <memory>
#include <utility>

namespace platform {

// A key of the environment is a type: its `Value` (with ==) and `static Value defaultValue()`.
template <class Key>
concept EnvironmentKey = requires {
    typename Key::Value;
    { Key::defaultValue() } -> std::convertible_to<typename Key::Value>;
};

using EnvironmentKeyId = const void*;
template <EnvironmentKey Key>
inline constexpr char environmentKeyTag = 0;
template <EnvironmentKey Key>
constexpr EnvironmentKeyId idOf()
{
    return &environmentKeyTag<Key>;
}

// The values that a modifier or the host writes for all that is below it. Which scope answers a key never
// changes while a node lives, so a reader is registered at that scope alone, and a changed value costs what
// reads it. Main thread only.
class EnvironmentScope {
public:
    explicit EnvironmentScope(std::shared_ptr<EnvironmentScope> parent = nullptr)
        : parent_(std::move(parent))
    {
    }

    // What holds here; `reader` is told when it changes. Null reads once.
    template <EnvironmentKey Key>
    typename Key::Value value(ViewNode* reader)
    {
        auto& entry = resolve(idOf<Key>(), reader);
        auto* found = std::any_cast<typename Key::Value>(&entry);
        return found ? *found : Key::defaultValue();
    }

    // Writes a value for what is below. Which keys a scope writes is settled before anything reads from it.
    template <EnvironmentKey Key>
    void set(typename Key::Value value)
    {
        auto& entry = entryOf(idOf<Key>());
        if (auto* present = std::any_cast<typename Key::Value>(&entry.value); present && *present == value)
            return;
        entry.source->prepareForChange();
        entry.value = std::move(value);
        entry.source->notify();
    }

private:
    struct Entry {
        std::any value; // empty: the default
        std::shared_ptr<ChangeSource> source = std::make_shared<ChangeSource>();
    };
    Entry& entryOf(EnvironmentKeyId key);
    const std::any& resolve(EnvironmentKeyId key, ViewNode* reader);

    std::shared_ptr<EnvironmentScope> parent_;
    std::map<EnvironmentKeyId, Entry> entries_;
};

} // namespace platform
