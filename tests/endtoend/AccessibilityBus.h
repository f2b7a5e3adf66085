// SPDX-License-Identifier: MIT
#pragma once

#include "tests/endtoend/Desktop.h"

#include <atspi/atspi.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace endtoend {

// A session bus of the tests' own; the accessibility bus is started by it on demand. One for all tests of a process:
// the client library connects only once.
class SessionBus {
public:
    static SessionBus& shared()
    {
        static SessionBus bus;
        return bus;
    }
    ~SessionBus() { atspi_exit(); }
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;
    const std::string& address() const { return address_; }

private:
    SessionBus()
        : daemon_({"dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=1"},
                  desktop_.environment())
        , address_(daemon_.readLine().value_or(""))
    {
        EXPECT_FALSE(address_.empty()) << "no session bus";
        setenv("DBUS_SESSION_BUS_ADDRESS", address_.c_str(), 1);
        setenv("DISPLAY", desktop_.display().c_str(), 1);
        EXPECT_LE(atspi_init(), 1);
    }

    Desktop desktop_; // that the bus's own programs look for
    Process daemon_;
    std::string address_;
};

// A reference that the client library counts.
template <class Type>
using Reference = std::unique_ptr<Type, decltype([](Type* object) { g_object_unref(object); })>;
using Accessible = Reference<AtspiAccessible>;

inline std::string take(gchar* text)
{
    std::string result = text ? text : "";
    g_free(text);
    return result;
}

// The first object of that role, and of that name if one is given, at or below `root`, depth first.
inline Accessible findRole(AtspiAccessible* root, AtspiRole role, const char* name = nullptr, int depth = 12)
{
    if (!root || depth == 0)
        return nullptr;
    atspi_accessible_clear_cache(root);
    if (atspi_accessible_get_role(root, nullptr) == role
        && (!name || take(atspi_accessible_get_name(root, nullptr)) == name))
        return Accessible(static_cast<AtspiAccessible*>(g_object_ref(root)));
    int count = atspi_accessible_get_child_count(root, nullptr);
    for (int i = 0; i < count; ++i) {
        Accessible child(atspi_accessible_get_child_at_index(root, i, nullptr));
        if (auto found = findRole(child.get(), role, name, depth - 1))
            return found;
    }
    return nullptr;
}

inline bool hasState(AtspiAccessible* object, AtspiStateType state)
{
    atspi_accessible_clear_cache(object);
    Reference<AtspiStateSet> states(atspi_accessible_get_state_set(object));
    return states && atspi_state_set_contains(states.get(), state);
}

} // namespace endtoend
