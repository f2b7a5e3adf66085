// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

namespace platform {

// Keys of attributes. The texts are the platform's.
inline constexpr std::string_view NSFontAttributeName = "NSFont";                       // UIFont
inline constexpr std::string_view NSForegroundColorAttributeName = "NSColor";           // UIColor
inline constexpr std::string_view NSBackgroundColorAttributeName = "NSBackgroundColor"; // UIColor
inline constexpr std::string_view NSLinkAttributeName = "NSLink"; // URL, or std::string when it is none
inline constexpr std::string_view NSUnderlineStyleAttributeName = "NSUnderline";         // NSUnderlineStyle
inline constexpr std::string_view NSStrikethroughStyleAttributeName = "NSStrikethrough"; // NSUnderlineStyle
inline constexpr std::string_view NSSuperscriptAttributeName = "NSSuperScript"; // int: 1 above, -1 below

// Of underlines and of strikethroughs. The numbers are the platform's.
enum class NSUnderlineStyle : int {
    none = 0,
    single = 1,
    thick = 2,
    doubled = 9,
};

// Any value that is copied and compared with ==, shared and never changed. Copies may cross threads if the
// value may.
class AttributeValue {
public:
    template <class Value>
        requires(!std::same_as<std::remove_cvref_t<Value>, AttributeValue>)
    AttributeValue(Value&& value)
        : AttributeValue(std::in_place_type<Stored<std::decay_t<Value>>>, std::forward<Value>(value))
    {
    }

    // The value when it is of this type, else null. Texts are std::string. Valid while a copy of this lives.
    template <class Value>
    const Value* as() const
    {
        return *type_ == typeid(Value) ? static_cast<const Value*>(value_.get()) : nullptr;
    }

    // Values of two types are never equal. A template, so that nothing converts to be compared.
    template <std::same_as<AttributeValue> Other>
    friend bool operator==(const AttributeValue& a, const Other& b)
    {
        return a.value_ == b.value_ || (*a.type_ == *b.type_ && a.areEqual_(a.value_.get(), b.value_.get()));
    }

private:
    using AreEqual = bool (*)(const void*, const void*);
    // Pointers to characters are texts here.
    template <class Value>
    using Stored = std::conditional_t<std::same_as<Value, const char*> || std::same_as<Value, char*>
                                          || std::same_as<Value, std::string_view>,
                                      std::string, Value>;

    template <class Value, class Source>
    AttributeValue(std::in_place_type_t<Value>, Source&& source)
        : value_(std::make_shared<const Value>(std::forward<Source>(source)))
        , type_(&typeid(Value))
        , areEqual_([](const void* a, const void* b) {
            return *static_cast<const Value*>(a) == *static_cast<const Value*>(b);
        })
    {
    }

    std::shared_ptr<const void> value_;
    const std::type_info* type_;
    AreEqual areEqual_;
};

// The attributes of a piece of text: a few values by key, in the order of the keys. A value whose copies
// share; changing one changes no other. Any thread.
class TextAttributes {
public:
    using Entry = std::pair<std::string, AttributeValue>;

    TextAttributes() = default;
    // Of a key given twice the last value counts.
    TextAttributes(std::initializer_list<Entry> entries);

    bool isEmpty() const { return entries().empty(); }
    const std::vector<Entry>& entries() const;
    // Null when there is none. Valid until this is changed.
    const AttributeValue* find(std::string_view key) const;
    // The value under `key` when there is one of this type, else null.
    template <class Value>
    const Value* get(std::string_view key) const
    {
        auto* found = find(key);
        return found ? found->template as<Value>() : nullptr;
    }

    void set(std::string_view key, AttributeValue value);
    void remove(std::string_view key);
    // Every entry of `others` replaces the one under its key.
    void merge(const TextAttributes& others);

    friend bool operator==(const TextAttributes& a, const TextAttributes& b)
    {
        return a.entries_ == b.entries_ || a.entries() == b.entries();
    }

private:
    std::vector<Entry>& detached();

    std::shared_ptr<std::vector<Entry>> entries_; // sorted by key; null when empty
};

} // namespace platform
