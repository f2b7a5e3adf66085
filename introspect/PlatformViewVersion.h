// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/Forward.h"

#include <compare>
#include <optional>

namespace introspect {

// What the catalogue says of a view type on one version of a platform: that it exists there and is an `Entity`, found
// by a selector of its own or by the default one; or that it does not exist. A constant: the version is looked up and
// the selector is made when they are asked for.
template <class Version, class ViewType, class Entity>
class PlatformViewVersion {
public:
    using Selector = IntrospectionSelector<Entity>;
    using MakeSelector = Selector (*)();

    // Without `makeSelector` the entity is found by IntrospectionSelector::defaultSelector.
    static constexpr PlatformViewVersion available(typename Version::Member member,
                                                   MakeSelector makeSelector = nullptr)
    {
        return PlatformViewVersion(member, makeSelector);
    }
    static constexpr PlatformViewVersion unavailable() { return PlatformViewVersion(std::nullopt, nullptr); }

    constexpr bool isAvailable() const { return member_.has_value(); }
    // Null when unavailable.
    const Version* version() const { return member_ ? &Version::member(*member_) : nullptr; }
    constexpr bool hasOwnSelector() const { return makeSelector_ != nullptr; }
    // None when unavailable or found by the default selector.
    std::optional<Selector> selector() const
    {
        return makeSelector_ ? std::optional(makeSelector_()) : std::nullopt;
    }

    // Ordered by version; unavailable ones are equal to each other and stand before all.
    friend constexpr std::weak_ordering operator<=>(const PlatformViewVersion& a,
                                                    const PlatformViewVersion& b)
    {
        return a.member_ <=> b.member_;
    }
    friend constexpr bool operator==(const PlatformViewVersion& a, const PlatformViewVersion& b)
    {
        return a.member_ == b.member_;
    }

private:
    constexpr PlatformViewVersion(std::optional<typename Version::Member> member, MakeSelector makeSelector)
        : member_(member)
        , makeSelector_(makeSelector)
    {
    }

    std::optional<typename Version::Member> member_; // none: unavailable
    MakeSelector makeSelector_;                      // null: the default selector
};

} // namespace introspect
