// SPDX-License-Identifier: MIT
#include "platform/swiftui/AnyTransition.h"

#include <utility>

namespace platform {

namespace {

AnyTransition::Effect combine(const AnyTransition::Effect& a, const AnyTransition::Effect& b)
{
    auto both = a;
    both.opacity *= b.opacity;
    both.scale = {a.scale.width * b.scale.width, a.scale.height * b.scale.height};
    if (b.scale != CGSize{1, 1})
        both.anchor = b.anchor;
    both.offset = {a.offset.dx + b.offset.dx, a.offset.dy + b.offset.dy};
    both.edges.insert(both.edges.end(), b.edges.begin(), b.edges.end());
    return both;
}

} // namespace

AnyTransition::AnyTransition(Effect insertion, Effect removal)
    : insertion_(std::move(insertion))
    , removal_(std::move(removal))
{
}

AnyTransition AnyTransition::combined(const AnyTransition& other) const
{
    return AnyTransition(combine(insertion_, other.insertion_), combine(removal_, other.removal_));
}

} // namespace platform
