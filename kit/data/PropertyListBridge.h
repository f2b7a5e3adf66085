// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/PropertyList.h"
#include "platform/foundation/String.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace zelk {

// How C++ values and the values of property lists become each other. Bridged are: text (std::string, String), truth
// values, integers of up to 64 signed bits, float and double, PropertyListDate, PropertyListData, PropertyListValue
// itself, enumerations by their raw value, and vectors and maps from std::string of all these.
//
// Back again the types must agree: text is no number and a number no text. Among numbers and truth values the value
// decides: 1, 1.0 and true are each other, 1.5 is no integer, 300 is no std::uint8_t, 2 is no truth value. One element
// that does not convert fails its whole container.
//
// An enumeration's raw value is its number, or what `rawValue(Enumeration)` in its own namespace gives. Where
// `allCases(Enumeration)` there gives a range of the cases, only these are read back, otherwise any number that fits;
// an enumeration with a rawValue needs it.
//
// Other types join by a specialisation with the two functions.
template <class Value>
struct PropertyListBridge;
// static PropertyListValue object(const Value&);
// static std::optional<Value> value(const PropertyListValue&);

template <class Value>
concept PropertyListBridged = requires(const Value& value, const platform::PropertyListValue& object) {
    { PropertyListBridge<Value>::object(value) } -> std::same_as<platform::PropertyListValue>;
    { PropertyListBridge<Value>::value(object) } -> std::same_as<std::optional<Value>>;
};

namespace bridging {

// The number that `object` is exactly, be it stored as a number of either kind or as a truth value.
std::optional<std::int64_t> exactInteger(const platform::PropertyListValue& object);
std::optional<double> exactDouble(const platform::PropertyListValue& object);
std::optional<platform::String> text(const platform::PropertyListValue& object);

template <class Type>
concept Stored = std::same_as<Type, std::string> || std::same_as<Type, platform::PropertyListDate>
    || std::same_as<Type, platform::PropertyListData>;

template <class Type>
concept Integer = std::integral<Type> && !std::same_as<Type, bool>
    && (sizeof(Type) < sizeof(std::int64_t) || std::signed_integral<Type>);

template <class Type>
concept Real = std::same_as<Type, float> || std::same_as<Type, double>;

template <class Type>
concept HasRawValue = requires(Type value) { rawValue(value); };
template <class Type>
concept HasCases = requires(Type value) { std::begin(allCases(value)); };

template <class Map>
concept TextMap =
    std::same_as<typename Map::key_type, std::string> && requires { typename Map::mapped_type; };

} // namespace bridging

template <>
struct PropertyListBridge<platform::PropertyListValue> {
    static platform::PropertyListValue object(const platform::PropertyListValue& value) { return value; }
    static std::optional<platform::PropertyListValue> value(const platform::PropertyListValue& object)
    {
        return object;
    }
};

template <bridging::Stored Type>
struct PropertyListBridge<Type> {
    static platform::PropertyListValue object(const Type& value) { return value; }
    static std::optional<Type> value(const platform::PropertyListValue& object)
    {
        auto* stored = object.as<Type>();
        return stored ? std::optional(*stored) : std::nullopt;
    }
};

template <>
struct PropertyListBridge<platform::String> {
    static platform::PropertyListValue object(const platform::String& value) { return value.toStdString(); }
    static std::optional<platform::String> value(const platform::PropertyListValue& object)
    {
        return bridging::text(object);
    }
};

template <>
struct PropertyListBridge<bool> {
    static platform::PropertyListValue object(bool value) { return value; }
    static std::optional<bool> value(const platform::PropertyListValue& object)
    {
        auto number = bridging::exactInteger(object);
        return number == 0 || number == 1 ? std::optional(number == 1) : std::nullopt;
    }
};

template <bridging::Integer Type>
struct PropertyListBridge<Type> {
    static platform::PropertyListValue object(Type value) { return value; }
    static std::optional<Type> value(const platform::PropertyListValue& object)
    {
        auto number = bridging::exactInteger(object);
        bool fits = number && static_cast<std::int64_t>(static_cast<Type>(*number)) == *number;
        return fits ? std::optional(static_cast<Type>(*number)) : std::nullopt;
    }
};

template <bridging::Real Type>
struct PropertyListBridge<Type> {
    static platform::PropertyListValue object(Type value) { return value; }
    static std::optional<Type> value(const platform::PropertyListValue& object)
    {
        auto number = bridging::exactDouble(object);
        bool fits = number && (*number != *number || double(static_cast<Type>(*number)) == *number);
        return fits ? std::optional(static_cast<Type>(*number)) : std::nullopt;
    }
};

template <class Type>
    requires std::is_enum_v<Type>
struct PropertyListBridge<Type> {
    static auto raw(Type value)
    {
        if constexpr (bridging::HasRawValue<Type>) {
            using Raw = std::remove_cvref_t<decltype(rawValue(value))>;
            static_assert(bridging::HasCases<Type>, "an enumeration with a rawValue needs allCases too");
            if constexpr (std::convertible_to<Raw, std::string_view>)
                return std::string(rawValue(value));
            else
                return rawValue(value);
        } else {
            return std::to_underlying(value);
        }
    }

    static platform::PropertyListValue object(Type value)
    {
        return PropertyListBridge<decltype(raw(value))>::object(raw(value));
    }
    static std::optional<Type> value(const platform::PropertyListValue& object)
    {
        auto found = PropertyListBridge<decltype(raw(Type()))>::value(object);
        if (!found)
            return std::nullopt;
        if constexpr (bridging::HasCases<Type>) {
            for (Type each : allCases(Type())) {
                if (raw(each) == *found)
                    return each;
            }
            return std::nullopt;
        } else {
            return static_cast<Type>(*found);
        }
    }
};

template <PropertyListBridged Element>
    requires(!std::same_as<Element, std::byte>)
struct PropertyListBridge<std::vector<Element>> {
    static platform::PropertyListValue object(const std::vector<Element>& value)
    {
        platform::PropertyListArray array;
        for (const Element& element : value)
            array.push_back(PropertyListBridge<Element>::object(element));
        return array;
    }
    static std::optional<std::vector<Element>> value(const platform::PropertyListValue& object)
    {
        auto* array = object.as<platform::PropertyListArray>();
        if (!array)
            return std::nullopt;
        std::vector<Element> elements;
        for (auto& each : *array) {
            auto element = PropertyListBridge<Element>::value(each);
            if (!element)
                return std::nullopt;
            elements.push_back(std::move(*element));
        }
        return elements;
    }
};

template <bridging::TextMap Map>
    requires PropertyListBridged<typename Map::mapped_type>
struct PropertyListBridge<Map> {
    using Mapped = typename Map::mapped_type;

    static platform::PropertyListValue object(const Map& value)
    {
        platform::PropertyListDictionary dictionary;
        for (auto& [key, mapped] : value)
            dictionary.emplace(key, PropertyListBridge<Mapped>::object(mapped));
        return dictionary;
    }
    static std::optional<Map> value(const platform::PropertyListValue& object)
    {
        auto* dictionary = object.as<platform::PropertyListDictionary>();
        if (!dictionary)
            return std::nullopt;
        Map map;
        for (auto& [key, each] : *dictionary) {
            auto mapped = PropertyListBridge<Mapped>::value(each);
            if (!mapped)
                return std::nullopt;
            map.emplace(key, std::move(*mapped));
        }
        return map;
    }
};

} // namespace zelk
