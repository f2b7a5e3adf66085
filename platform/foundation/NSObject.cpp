// SPDX-License-Identifier: MIT
#include "platform/foundation/NSObject.h"

#include <functional>
#include <utility>

namespace platform {

NSObject::~NSObject() = default;

std::size_t NSObject::hash() const
{
    return std::hash<const void*>{}(this);
}

bool NSObject::isEqual(const NSObject& other) const
{
    return this == &other;
}

void NSObject::setAssociatedObject(std::string key, std::any value)
{
    if (!associatedObjects_)
        associatedObjects_ = std::make_unique<std::map<std::string, std::any, std::less<>>>();
    associatedObjects_->insert_or_assign(std::move(key), std::move(value));
}

void NSObject::removeAssociatedObject(std::string_view key)
{
    if (!associatedObjects_)
        return;
    if (auto found = associatedObjects_->find(key); found != associatedObjects_->end())
        associatedObjects_->erase(found);
}

const std::any* NSObject::findAssociatedObject(std::string_view key) const
{
    if (!associatedObjects_)
        return nullptr;
    auto found = associatedObjects_->find(key);
    return found == associatedObjects_->end() ? nullptr : &found->second;
}

} // namespace platform
