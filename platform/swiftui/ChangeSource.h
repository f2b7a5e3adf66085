// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Forward.h"

#include <memory>
#include <unordered_set>

namespace platform {

// Something that nodes depend on: a state, an environment value, an observed object. A node that reads it is
// registered here and is marked dirty when it changes. Main thread only.
class ChangeSource : public std::enable_shared_from_this<ChangeSource> {
public:
    ChangeSource() = default;
    // Nodes hold its address.
    ChangeSource(const ChangeSource&) = delete;
    ChangeSource& operator=(const ChangeSource&) = delete;
    virtual ~ChangeSource() = default;

    // Marks every dependent dirty; they are updated before the run loop sleeps.
    void notify();
    // Called before a change that `notify` will follow: what was changed under another transaction is
    // brought on screen first, so that what is animated moves from where it was.
    void prepareForChange();

private:
    friend class ViewNode;
    std::unordered_set<ViewNode*> dependents_; // each takes itself out before it goes
};

} // namespace platform
