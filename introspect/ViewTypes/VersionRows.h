// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/PlatformViewVersion.h"
#include "introspect/iOSVersion.h"
#include "introspect/macOSVersion.h"
#include "introspect/tvOSVersion.h"
#include "introspect/visionOSVersion.h"

// The rows of the catalogue: the constants of one view type on one platform, named like the platform's versions. Most
// types follow one of a few patterns; each is a template here.
namespace introspect::catalogue {

// How a row finds its entity where the default selector does not do.
template <class Entity>
using MakeSelector = IntrospectionSelector<Entity> (*)();

// A constant of the version `member` of a view type that exists from `first` on.
template <class Version, class ViewType, class Entity>
constexpr PlatformViewVersion<Version, ViewType, Entity>
constantSince(typename Version::Member first, typename Version::Member member,
              MakeSelector<Entity> makeSelector = nullptr)
{
    using Constant = PlatformViewVersion<Version, ViewType, Entity>;
    return member < first ? Constant::unavailable() : Constant::available(member, makeSelector);
}

// One class on all five versions, for the two families that count 13 to 17.
template <class Version, class ViewType, class Entity, typename Version::Member First,
          MakeSelector<Entity> Selector>
struct FiveVersions {
    using Constant = PlatformViewVersion<Version, ViewType, Entity>;
    using Member = typename Version::Member;
    static constexpr Constant v13 = constantSince<Version, ViewType, Entity>(First, Member::v13, Selector);
    static constexpr Constant v14 = constantSince<Version, ViewType, Entity>(First, Member::v14, Selector);
    static constexpr Constant v15 = constantSince<Version, ViewType, Entity>(First, Member::v15, Selector);
    static constexpr Constant v16 = constantSince<Version, ViewType, Entity>(First, Member::v16, Selector);
    static constexpr Constant v17 = constantSince<Version, ViewType, Entity>(First, Member::v17, Selector);
};

template <class ViewType, class Entity, iOSVersion::Member First = iOSVersion::Member::v13,
          MakeSelector<Entity> Selector = nullptr>
using iOSRow = FiveVersions<iOSVersion, ViewType, Entity, First, Selector>;
template <class ViewType, class Entity, tvOSVersion::Member First = tvOSVersion::Member::v13,
          MakeSelector<Entity> Selector = nullptr>
using tvOSRow = FiveVersions<tvOSVersion, ViewType, Entity, First, Selector>;

// One class up to version 15 and another from 16 on: what lists are made of changed there.
template <class Version, class ViewType, class Older, class Newer, typename Version::Member First>
struct FiveVersionsChangingClass {
    using Member = typename Version::Member;
    static constexpr PlatformViewVersion<Version, ViewType, Older> v13 =
        constantSince<Version, ViewType, Older>(First, Member::v13);
    static constexpr PlatformViewVersion<Version, ViewType, Older> v14 =
        constantSince<Version, ViewType, Older>(First, Member::v14);
    static constexpr PlatformViewVersion<Version, ViewType, Older> v15 =
        constantSince<Version, ViewType, Older>(First, Member::v15);
    static constexpr PlatformViewVersion<Version, ViewType, Newer> v16 =
        constantSince<Version, ViewType, Newer>(First, Member::v16);
    static constexpr PlatformViewVersion<Version, ViewType, Newer> v17 =
        constantSince<Version, ViewType, Newer>(First, Member::v17);
};

template <class ViewType, class Older, class Newer, iOSVersion::Member First = iOSVersion::Member::v13>
using iOSChangingRow = FiveVersionsChangingClass<iOSVersion, ViewType, Older, Newer, First>;
template <class ViewType, class Older, class Newer, tvOSVersion::Member First = tvOSVersion::Member::v13>
using tvOSChangingRow = FiveVersionsChangingClass<tvOSVersion, ViewType, Older, Newer, First>;

template <class ViewType, class Entity, macOSVersion::Member First = macOSVersion::Member::v10_15>
struct macOSRow {
    using Constant = PlatformViewVersion<macOSVersion, ViewType, Entity>;
    using Member = macOSVersion::Member;
    static constexpr Constant v10_15 = constantSince<macOSVersion, ViewType, Entity>(First, Member::v10_15);
    static constexpr Constant v10_15_4 =
        constantSince<macOSVersion, ViewType, Entity>(First, Member::v10_15_4);
    static constexpr Constant v11 = constantSince<macOSVersion, ViewType, Entity>(First, Member::v11);
    static constexpr Constant v12 = constantSince<macOSVersion, ViewType, Entity>(First, Member::v12);
    static constexpr Constant v13 = constantSince<macOSVersion, ViewType, Entity>(First, Member::v13);
    static constexpr Constant v14 = constantSince<macOSVersion, ViewType, Entity>(First, Member::v14);
};

template <class ViewType, class Entity, MakeSelector<Entity> Selector = nullptr>
struct visionOSRow {
    using Constant = PlatformViewVersion<visionOSVersion, ViewType, Entity>;
    static constexpr Constant v1 = Constant::available(visionOSVersion::Member::v1, Selector);
};

} // namespace introspect::catalogue
