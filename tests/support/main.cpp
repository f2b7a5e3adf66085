// SPDX-License-Identifier: MIT
// The main program of every test program.
#include <gtest/gtest.h>

#include <cstdlib>

int main(int argumentCount, char** arguments)
{
    testing::InitGoogleTest(&argumentCount, arguments);
    // A death test forks; re-running the program is the only way that is safe once threads exist.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    // Nobody is filmed by a test.
    ::setenv("ZELK_CAPTURE", "none", 1);
    return RUN_ALL_TESTS();
}
