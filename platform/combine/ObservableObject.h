// SPDX-License-Identifier: MIT
#pragma once

#include "platform/combine/PassthroughSubject.h"
#include "platform/foundation/NSObject.h"

namespace platform {

// An object that says when it changes. Its observers belong to the thread that the object belongs to.
class ObservableObject : public NSObject {
public:
    ObservableObject();
    ~ObservableObject() override;

    // Sent once for each change, after the new value is stored: who is told may read it at once.
    // An observer may let go of the object.
    PassthroughSubject<Void>& objectWillChange() { return objectWillChange_; }

private:
    PassthroughSubject<Void> objectWillChange_;
};

} // namespace platform
