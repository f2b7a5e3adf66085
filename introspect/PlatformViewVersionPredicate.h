// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectionSelector.h"
#include "introspect/PlatformViewVersion.h"
#include "introspect/iOSVersion.h"
#include "introspect/macOSVersion.h"
#include "introspect/tvOSVersion.h"
#include "introspect/visionOSVersion.h"

#include <concepts>
#include <initializer_list>
#include <optional>

namespace introspect {

// How to find the `Entity` behind a view type on the running system; no selector where none of the listed versions is
// the running one. Made by iOS(...), tvOS(...), macOS(...), visionOS(...).
template <class ViewType, class Entity>
struct PlatformViewVersionPredicate {
    std::optional<IntrospectionSelector<Entity>> selector;

    // The first of `versions` that is available and whose version `matches` decides.
    template <class Version>
    static PlatformViewVersionPredicate
    firstMatch(std::initializer_list<PlatformViewVersion<Version, ViewType, Entity>> versions,
               bool (PlatformVersion::*matches)() const)
    {
        for (const auto& candidate : versions) {
            const Version* version = candidate.version();
            if (version && (version->*matches)()) {
                auto own = candidate.selector();
                return {own ? std::move(own) : IntrospectionSelector<Entity>::defaultSelector()};
            }
        }
        return {};
    }
};

// A version and all later ones.
template <class Version, class ViewType, class Entity>
struct VersionLowerBound {
    PlatformViewVersion<Version, ViewType, Entity> version;
};

template <class Version, class ViewType, class Entity>
VersionLowerBound<Version, ViewType, Entity>
startingAt(const PlatformViewVersion<Version, ViewType, Entity>& version)
{
    return {version};
}

// One pair for each family: one of the listed versions is the running one; or the bound or a later one is.

template <class ViewType, class Entity,
          std::same_as<PlatformViewVersion<iOSVersion, ViewType, Entity>>... More>
PlatformViewVersionPredicate<ViewType, Entity>
iOS(const PlatformViewVersion<iOSVersion, ViewType, Entity>& first, const More&... more)
{
    return PlatformViewVersionPredicate<ViewType, Entity>::template firstMatch<iOSVersion>(
        {first, more...}, &PlatformVersion::isCurrent);
}

template <class ViewType, class Entity>
PlatformViewVersionPredicate<ViewType, Entity>
iOS(const VersionLowerBound<iOSVersion, ViewType, Entity>& bound)
{
    return PlatformViewVersionPredicate<ViewType, Entity>::template firstMatch<iOSVersion>(
        {bound.version}, &PlatformVersion::isCurrentOrPast);
}

template <class ViewType, class Entity,
          std::same_as<PlatformViewVersion<tvOSVersion, ViewType, Entity>>... More>
PlatformViewVersionPredicate<ViewType, Entity>
tvOS(const PlatformViewVersion<tvOSVersion, ViewType, Entity>& first, const More&... more)
{
    return PlatformViewVersionPredicate<ViewType, Entity>::template firstMatch<tvOSVersion>(
        {first, more...}, &PlatformVersion::isCurrent);
}

template <class ViewType, class Entity>
PlatformViewVersionPredicate<ViewType, Entity>
tvOS(const VersionLowerBound<tvOSVersion, ViewType, Entity>& bound)
{
    return PlatformViewVersionPredicate<ViewType, Entity>::template firstMatch<tvOSVersion>(
        {bound.version}, &PlatformVersion::isCurrentOrPast);
}

template <class ViewType, class Entity,
          std::same_as<PlatformViewVersion<macOSVersion, ViewType, Entity>>... More>
PlatformViewVersionPredicate<ViewType, Entity>
macOS(const PlatformViewVersion<macOSVersion, ViewType, Entity>& first, const More&... more)
{
    return PlatformViewVersionPredicate<ViewType, Entity>::template firstMatch<macOSVersion>(
        {first, more...}, &PlatformVersion::isCurrent);
}

template <class ViewType, class Entity>
PlatformViewVersionPredicate<ViewType, Entity>
macOS(const VersionLowerBound<macOSVersion, ViewType, Entity>& bound)
{
    return PlatformViewVersionPredicate<ViewType, Entity>::template firstMatch<macOSVersion>(
        {bound.version}, &PlatformVersion::isCurrentOrPast);
}

template <class ViewType, class Entity,
          std::same_as<PlatformViewVersion<visionOSVersion, ViewType, Entity>>... More>
PlatformViewVersionPredicate<ViewType, Entity>
visionOS(const PlatformViewVersion<visionOSVersion, ViewType, Entity>& first, const More&... more)
{
    return PlatformViewVersionPredicate<ViewType, Entity>::template firstMatch<visionOSVersion>(
        {first, more...}, &PlatformVersion::isCurrent);
}

template <class ViewType, class Entity>
PlatformViewVersionPredicate<ViewType, Entity>
visionOS(const VersionLowerBound<visionOSVersion, ViewType, Entity>& bound)
{
    return PlatformViewVersionPredicate<ViewType, Entity>::template firstMatch<visionOSVersion>(
        {bound.version}, &PlatformVersion::isCurrentOrPast);
}

} // namespace introspect
