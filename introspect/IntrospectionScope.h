// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <initializer_list>

namespace introspect {

// Where a target is looked for, seen from the modified view: in what the view itself is made of, among what it stands
// in, or both. A set.
struct IntrospectionScope {
    std::size_t rawValue = 0;

    static const IntrospectionScope receiver;
    static const IntrospectionScope ancestor;

    constexpr IntrospectionScope() = default;
    constexpr explicit IntrospectionScope(std::size_t raw)
        : rawValue(raw)
    {
    }
    constexpr IntrospectionScope(std::initializer_list<IntrospectionScope> members)
    {
        for (const auto member : members)
            rawValue |= member.rawValue;
    }

    constexpr bool isEmpty() const { return rawValue == 0; }
    // Whether all members of `other` are in this set; true for an empty `other`.
    constexpr bool contains(IntrospectionScope other) const
    {
        return (rawValue & other.rawValue) == other.rawValue;
    }

    friend constexpr IntrospectionScope operator|(IntrospectionScope a, IntrospectionScope b)
    {
        return IntrospectionScope(a.rawValue | b.rawValue);
    }
    friend constexpr IntrospectionScope operator&(IntrospectionScope a, IntrospectionScope b)
    {
        return IntrospectionScope(a.rawValue & b.rawValue);
    }
    friend constexpr IntrospectionScope operator^(IntrospectionScope a, IntrospectionScope b)
    {
        return IntrospectionScope(a.rawValue ^ b.rawValue);
    }
    // What is in `a` and not in `b`.
    friend constexpr IntrospectionScope operator-(IntrospectionScope a, IntrospectionScope b)
    {
        return IntrospectionScope(a.rawValue & ~b.rawValue);
    }
    constexpr IntrospectionScope& operator|=(IntrospectionScope other) { return *this = *this | other; }
    constexpr IntrospectionScope& operator&=(IntrospectionScope other) { return *this = *this & other; }
    constexpr IntrospectionScope& operator^=(IntrospectionScope other) { return *this = *this ^ other; }
    constexpr IntrospectionScope& operator-=(IntrospectionScope other) { return *this = *this - other; }

    friend constexpr bool operator==(IntrospectionScope, IntrospectionScope) = default;
};

inline constexpr IntrospectionScope IntrospectionScope::receiver = IntrospectionScope(1);
inline constexpr IntrospectionScope IntrospectionScope::ancestor = IntrospectionScope(2);

} // namespace introspect
