// SPDX-License-Identifier: MIT
#pragma once

namespace introspect {

class IntrospectionAnchorPlatformViewController;
class IntrospectionPlatformViewController;
class IntrospectionStore;

template <class Target>
class IntrospectionSelector;
template <class Version, class ViewType, class Entity>
class PlatformViewVersion;
template <class ViewType, class Entity>
struct PlatformViewVersionPredicate;

} // namespace introspect
