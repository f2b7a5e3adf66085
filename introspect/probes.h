// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectionPlatformViewController.h"

#include <functional>
#include <memory>

// What all introspection views do with their probe, whatever their target. Main thread only.
namespace introspect {

// Searches from the probe and, when it finds a target, customises it.
using IntrospectionAttempt =
    std::function<IntrospectionPlatformViewController::Outcome(IntrospectionPlatformViewController&)>;

// A probe that makes the attempt at each event of its life until it succeeds. On systems before 14, where those events
// may all come before the hierarchy is complete, it also makes one from the main queue.
std::shared_ptr<IntrospectionPlatformViewController> makeProbe(const platform::UUID& id,
                                                               IntrospectionAttempt attempt);

// The declarative view was described anew: a probe that still searches goes on with what the new description asks for.
void renewProbe(IntrospectionPlatformViewController& probe, IntrospectionAttempt attempt);

} // namespace introspect
