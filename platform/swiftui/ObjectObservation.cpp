// SPDX-License-Identifier: MIT
#include "platform/swiftui/ObjectObservation.h"

#include "platform/swiftui/ViewNode.h"

#include <utility>

namespace platform {

ObjectObservation::ObjectObservation(std::shared_ptr<ObservableObject> object)
    : object_(std::move(object))
{
    if (object_)
        subscription_ = object_->objectWillChange().sink([this](const Void&) { objectChanged(); });
}

void ObjectObservation::connect(ViewNode& node, std::shared_ptr<void>& storage,
                                const std::shared_ptr<ObservableObject>& object)
{
    auto observation = std::static_pointer_cast<ObjectObservation>(storage);
    if (!observation || observation->object() != object) {
        observation = std::make_shared<ObjectObservation>(object);
        storage = observation;
    }
    node.dependOn(observation);
}

void ObjectObservation::objectChanged()
{
    auto kept = shared_from_this(); // a flush may unmount the nodes that hold this
    prepareForChange();
    notify();
}

} // namespace platform
