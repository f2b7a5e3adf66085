// SPDX-License-Identifier: MIT
#pragma once

#include "platform/combine/AnyCancellable.h"
#include "platform/combine/ObservableObject.h"
#include "platform/swiftui/ChangeSource.h"

#include <memory>

namespace platform {

class ViewNode;

// What a node keeps for an object whose changes it follows. Main thread only.
class ObjectObservation : public ChangeSource {
public:
    // Registers `node` with the object's changes; the subscription stays while it is the same object. Null: none.
    static void connect(ViewNode& node, std::shared_ptr<void>& storage,
                        const std::shared_ptr<ObservableObject>& object);

    explicit ObjectObservation(std::shared_ptr<ObservableObject> object);
    const std::shared_ptr<ObservableObject>& object() const { return object_; }

private:
    void objectChanged();

    std::shared_ptr<ObservableObject> object_;
    AnyCancellable subscription_;
};

} // namespace platform
