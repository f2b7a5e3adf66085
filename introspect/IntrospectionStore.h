// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/Forward.h"
#include "introspect/Weak.h"
#include "platform/foundation/UUID.h"

#include <unordered_map>

namespace introspect {

// Which anchor belongs to which probe: the two that were made for the same modifier value. One table for the process,
// made on first use; it never shrinks, the references in it empty by themselves. Main thread only.
class IntrospectionStore {
public:
    struct Pair {
        Weak<IntrospectionPlatformViewController> controller;
        Weak<IntrospectionAnchorPlatformViewController> anchor;
    };

    static IntrospectionStore& shared();
    IntrospectionStore(const IntrospectionStore&) = delete; // there is one
    IntrospectionStore& operator=(const IntrospectionStore&) = delete;

    // Empty references for an `id` that nobody recorded.
    Pair pair(const platform::UUID& id) const;
    // Each takes the place of what was recorded for the same `id` before.
    void setController(const platform::UUID& id,
                       std::weak_ptr<IntrospectionPlatformViewController> controller);
    void setAnchor(const platform::UUID& id, std::weak_ptr<IntrospectionAnchorPlatformViewController> anchor);

private:
    IntrospectionStore() = default;

    std::unordered_map<platform::UUID, Pair> pairs_;
};

} // namespace introspect
