// SPDX-License-Identifier: MIT
#include "introspect/IntrospectionScope.h"

#include <gtest/gtest.h>

namespace introspect {

TEST(IntrospectionScope, IsASetOfBits)
{
    const IntrospectionScope none;
    const auto receiver = IntrospectionScope::receiver;
    const auto ancestor = IntrospectionScope::ancestor;
    const IntrospectionScope both{receiver, ancestor};
    struct Case {
        const char* name;
        IntrospectionScope result;
        std::size_t expected;
    };
    const Case cases[] = {
        {"receiver has the first bit", receiver, 1},
        {"ancestor has the second", ancestor, 2},
        {"a list is the union of its members", both, 3},
        {"an empty list is empty", IntrospectionScope{}, 0},
        {"a member listed twice is in once", {receiver, receiver}, 1},
        {"union", receiver | ancestor, 3},
        {"intersection", both & ancestor, 2},
        {"symmetric difference", both ^ receiver, 2},
        {"subtraction", both - receiver, 2},
        {"subtraction of what is not in it", receiver - ancestor, 1},
        {"subtraction from nothing", none - both, 0},
    };
    for (const auto& test : cases)
        EXPECT_EQ(test.result.rawValue, test.expected) << test.name;
}

TEST(IntrospectionScope, ContainsWhatAllOfIsInIt)
{
    const IntrospectionScope both{IntrospectionScope::receiver, IntrospectionScope::ancestor};
    EXPECT_TRUE(both.contains(IntrospectionScope::receiver));
    EXPECT_TRUE(both.contains(both));
    EXPECT_TRUE(IntrospectionScope{}.contains({}));
    EXPECT_FALSE(IntrospectionScope::receiver.contains(both));
    EXPECT_FALSE(IntrospectionScope{}.contains(IntrospectionScope::ancestor));
}

} // namespace introspect
