// SPDX-License-Identifier: MIT
#pragma once

#include <any>
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace platform {

// The base of all reference types of the port: identity, equality, and values that others attach.
// Made by std::make_shared and held by std::shared_ptr; a back reference, a delegate, a target is a
// std::weak_ptr. Attached values belong to the object's own thread.
class NSObject : public std::enable_shared_from_this<NSObject> {
public:
    NSObject() = default;
    // An object is its address: neither copied nor moved.
    NSObject(const NSObject&) = delete;
    NSObject& operator=(const NSObject&) = delete;
    virtual ~NSObject();

    // Equal objects have equal hashes. Default: identity.
    virtual std::size_t hash() const;
    virtual bool isEqual(const NSObject& other) const;

    // A value that another module attached under `key`; null when there is none or it is of another
    // type. To attach a reference without keeping it alive, attach a std::weak_ptr.
    template <class Value>
    const Value* associatedObject(std::string_view key) const
    {
        return std::any_cast<Value>(findAssociatedObject(key));
    }
    // Replaces what was attached under `key`.
    void setAssociatedObject(std::string key, std::any value);
    void removeAssociatedObject(std::string_view key);

protected:
    // This object as the type that the caller knows it to be. Null while the constructor runs.
    template <class Self>
    std::shared_ptr<Self> sharedFrom(Self* self)
    {
        auto owner = weak_from_this().lock();
        return owner ? std::shared_ptr<Self>(std::move(owner), self) : nullptr;
    }

private:
    const std::any* findAssociatedObject(std::string_view key) const;

    // Most objects have none: one pointer is all they pay.
    std::unique_ptr<std::map<std::string, std::any, std::less<>>> associatedObjects_;
};

} // namespace platform
