// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Result.h"

#include <chrono>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace platform {

class PropertyListValue;

using PropertyListArray = std::vector<PropertyListValue>;
using PropertyListDictionary = std::map<std::string, PropertyListValue, std::less<>>;
using PropertyListData = std::vector<std::byte>;
using PropertyListDate = std::chrono::sys_seconds;

// What becomes a value as it stands, without being named as Storage: truth values, integers that 64 signed bits hold,
// reals, dates, bytes and containers.
template <class Type>
concept PropertyListStorable = std::same_as<Type, double> || std::same_as<Type, float>
    || (std::integral<Type> && !std::same_as<Type, char>
        && (sizeof(Type) < sizeof(std::int64_t) || std::signed_integral<Type>))
    || std::same_as<Type, PropertyListDate> || std::same_as<Type, PropertyListData>
    || std::same_as<Type, PropertyListArray> || std::same_as<Type, PropertyListDictionary>;

// A value of a property list: text, number, truth value, date, bytes, array or dictionary.
class PropertyListValue {
public:
    using Storage = std::variant<std::string, std::int64_t, double, bool, PropertyListDate, PropertyListData,
                                 PropertyListArray, PropertyListDictionary>;

    PropertyListValue(Storage storage);
    PropertyListValue(std::string text);
    PropertyListValue(const char* text);
    template <PropertyListStorable Type>
    PropertyListValue(Type value)
        : PropertyListValue(storage(std::move(value)))
    {
    }

    // The value when it is of this type, else null: `value.as<std::string>()`. Valid while the value lives.
    template <class Type>
    const Type* as() const
    {
        return std::get_if<Type>(&storage_);
    }
    template <class Type>
    Type* as()
    {
        return std::get_if<Type>(&storage_);
    }
    // The entry of a dictionary; null when there is none or this is not a dictionary.
    const PropertyListValue* find(std::string_view key) const;

    friend bool operator==(const PropertyListValue&, const PropertyListValue&) = default;

private:
    template <class Type>
    static Storage storage(Type value)
    {
        if constexpr (std::same_as<Type, bool>)
            return value;
        else if constexpr (std::integral<Type>)
            return static_cast<std::int64_t>(value);
        else if constexpr (std::floating_point<Type>)
            return static_cast<double>(value);
        else
            return value;
    }

    Storage storage_;
};

// Limits on what strangers may put into a list.
struct PropertyListLimits {
    std::size_t bytes = 1024 * 1024;
    std::size_t depth = 64;
    std::size_t values = 100'000;
};

// Reads the XML form, in UTF-8, UTF-16 or what its XML declaration says. Entity declarations are refused, so
// nothing can expand and nothing outside is read. Errors: NSCocoaError::propertyListReadCorrupt; the
// failure reason names the line. Of a key given twice the last value counts, as on the platform.
[[nodiscard]] Result<PropertyListValue> parsePropertyList(std::string_view xml,
                                                          const PropertyListLimits& limits = {});

// The same from a file, a dictionary at its root being required. Errors: also the file-read codes.
[[nodiscard]] Result<PropertyListDictionary> readPropertyList(const URL& file,
                                                              const PropertyListLimits& limits = {});

} // namespace platform
