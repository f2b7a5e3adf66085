// SPDX-License-Identifier: MIT
#include "introspect/IntrospectionScope.h"

#include <gtest/gtest.h>

namespace introspect {

TEST(IntrospectionScope, IsASetOfBits)
{
    const auto receiver = IntrospectionScope::receiver, ancestor = IntrospectionScope::ancestor;
    const IntrospectionScope none, both{receiver, ancestor};
    const std::pair<IntrospectionScope, std::size_t> cases[] = {
        {receiver, 1},
        {ancestor, 2},
        {both, 3},
        {{}, 0},
        {receiver | ancestor, 3},
        {{receiver, receiver}, 1},
        {both & ancestor, 2},
        {both ^ receiver, 2},
        {both - receiver, 2},
        {none - both, 0},
        {receiver - ancestor, 1},
    };
    for (const auto& [scope, bits] : cases)
        EXPECT_EQ(scope.rawValue, bits);
    EXPECT_TRUE(both.contains(receiver) && both.contains(both) && none.contains({}));
    EXPECT_FALSE(receiver.contains(both) || none.contains(ancestor));
}

} // namespace introspect
