// SPDX-License-Identifier: MIT
#pragma once

#include "kit/data/PropertyListBridge.h"
#include "platform/foundation/NSUserDefaults.h"
#include "platform/foundation/Precondition.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace zelk {

namespace bridging {

// An optional, recognised without naming what it wraps, and what that is bridged as.
template <class Value>
struct AnyOptional : std::false_type {
    static std::optional<platform::PropertyListValue> object(const Value& value)
    {
        return PropertyListBridge<Value>::object(value);
    }
    static std::optional<Value> value(const platform::PropertyListValue& object)
    {
        return PropertyListBridge<Value>::value(object);
    }
};

template <class Wrapped>
struct AnyOptional<std::optional<Wrapped>> : std::true_type {
    static bool isNil(const std::optional<Wrapped>& value) { return !value; }
    // Nothing when it is nil; so is what wraps a nil.
    static std::optional<platform::PropertyListValue> object(const std::optional<Wrapped>& value)
    {
        return isNil(value) ? std::nullopt : AnyOptional<Wrapped>::object(*value);
    }
    static std::optional<std::optional<Wrapped>> value(const platform::PropertyListValue& object)
    {
        std::optional<std::optional<Wrapped>> value;
        if (auto wrapped = AnyOptional<Wrapped>::value(object))
            value.emplace(std::move(*wrapped));
        return value;
    }
};

} // namespace bridging

// One setting under one key: a value of a bridged type (see PropertyListBridge.h) or an optional of one. Copies refer
// to the same store and key. Any thread, as far as the value itself allows.
//
//     UserDefaultsBacked<double> volume(0.8, "volume");
//     volume.setWrappedValue(0.5);
template <class Value>
struct UserDefaultsBacked {
    // Stores nothing. Requires: a store.
    UserDefaultsBacked(
        Value wrappedValue, std::string settingKey,
        std::shared_ptr<platform::NSUserDefaults> store = platform::NSUserDefaults::standardUserDefaults())
        : key(std::move(settingKey))
        , defaultValue(std::move(wrappedValue))
        , storage(std::move(store))
    {
        platform::precondition(storage != nullptr, "a setting needs a store");
    }

    // What is stored; the default value when nothing is, or nothing that converts to `Value`, which stays as it is.
    Value wrappedValue() const
    {
        if (auto object = storage->valueForKey(key)) {
            if (auto value = bridging::AnyOptional<Value>::value(*object))
                return std::move(*value);
        }
        return defaultValue;
    }

    // Stores; an optional that holds nothing removes the key, so that the default value is read again.
    void setWrappedValue(const Value& value) const
    {
        if (auto object = bridging::AnyOptional<Value>::object(value))
            storage->setValue(std::move(object), key);
        else
            storage->removeObjectForKey(key);
    }

    std::string key;
    Value defaultValue;
    std::shared_ptr<platform::NSUserDefaults> storage;
};

} // namespace zelk
