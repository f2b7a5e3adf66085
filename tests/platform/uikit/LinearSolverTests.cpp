// SPDX-License-Identifier: MIT
#include "platform/uikit/LinearSolver.h"

#include <gtest/gtest.h>

#include <random>

namespace platform {
namespace {

using Relation = LinearSolver::Relation;
using Terms = std::vector<LinearSolver::Term>;

TEST(LinearSolver, AContradictionIsRefusedAndTheRestStillHolds)
{
    constexpr std::tuple<std::string_view, Relation, double> cases[] = {
        {"another value", Relation::equal, -11},
        {"a lower limit above it", Relation::greaterThanOrEqual, -11},
        {"an upper limit below it", Relation::lessThanOrEqual, -9},
    };
    for (auto& [name, relation, constant] : cases) {
        SCOPED_TRACE(name);
        LinearSolver solver(2);
        auto x = solver.addVariable(), y = solver.addVariable();
        ASSERT_TRUE(solver.require(Terms{{x, 1}, {y, -1}}, Relation::equal, 0)); // x = y
        ASSERT_TRUE(solver.require(Terms{{y, 1}}, Relation::equal, -10));
        EXPECT_TRUE(solver.require(Terms{{x, 2}, {y, 4}}, Relation::equal, -60)); // the same once more
        EXPECT_FALSE(solver.require(Terms{{x, 1}}, relation, constant));
        auto z = solver.addVariable();
        solver.prefer(Terms{{z, 1}}, Relation::equal, 100, 0); // z = -100, whatever a lower level says
        for (int i = 0; i < 50; ++i)
            solver.prefer(Terms{{z, 1000}}, Relation::equal, 0, 1);
        solver.solve();
        EXPECT_NEAR(solver.value(z), -100, 1e-6);
        EXPECT_NEAR(solver.value(x), 10, 1e-6);
        EXPECT_NEAR(solver.value(y), 10, 1e-6);
    }
}

TEST(LinearSolver, ContradictingLimitsOfAChainAreFoundThroughOtherVariables)
{
    LinearSolver solver(1);
    auto a = solver.addVariable(), b = solver.addVariable(), c = solver.addVariable();
    ASSERT_TRUE(solver.require(Terms{{a, 1}, {b, -1}}, Relation::lessThanOrEqual, 5)); // a + 5 <= b
    ASSERT_TRUE(solver.require(Terms{{b, 1}, {c, -1}}, Relation::lessThanOrEqual, 5)); // b + 5 <= c
    ASSERT_TRUE(solver.require(Terms{{a, 1}}, Relation::greaterThanOrEqual, 0));
    EXPECT_FALSE(solver.require(Terms{{c, 1}}, Relation::lessThanOrEqual, -9)); // c <= 9
    ASSERT_TRUE(solver.require(Terms{{c, 1}}, Relation::lessThanOrEqual, -10)); // c <= 10 just fits
    solver.solve();
    EXPECT_NEAR(solver.value(b), 5, 1e-6);
}

// A chain of boxes each at least as wide as it wants, in a space of given size.
TEST(LinearSolver, RandomRowsOfBoxesFillTheirSpaceWithoutOverlap)
{
    std::mt19937 random(7);
    for (int round = 0; round < 60; ++round) {
        auto count = 1 + random() % 12;
        auto space = static_cast<double>(random() % 1000);
        LinearSolver solver(2);
        double wanted = 0, got = 0; // got: of the widths that were wanted
        std::vector<double> widths;
        std::vector<LinearSolver::Variable> edges{solver.addVariable()};
        ASSERT_TRUE(solver.require(Terms{{edges[0], 1}}, Relation::equal, 0));
        for (unsigned i = 0; i < count; ++i) {
            auto width = static_cast<double>(random() % 100);
            wanted += width;
            widths.push_back(width);
            edges.push_back(solver.addVariable());
            Terms box{{edges[i + 1], 1}, {edges[i], -1}};
            ASSERT_TRUE(solver.require(box, Relation::greaterThanOrEqual, 0));
            solver.prefer(box, Relation::greaterThanOrEqual, -width, 0);
            solver.prefer(box, Relation::lessThanOrEqual, -width, 1);
        }
        ASSERT_TRUE(solver.require(Terms{{edges.back(), 1}}, Relation::equal, -space));
        solver.solve();
        for (unsigned i = 0; i < count; ++i) {
            auto width = solver.value(edges[i + 1]) - solver.value(edges[i]);
            ASSERT_GE(width, -1e-6);
            got += std::min(width, widths[i]);
        }
        EXPECT_NEAR(got, std::min(space, wanted), 1e-6); // no space lies idle while a box lacks some
        EXPECT_NEAR(solver.value(edges.back()), space, 1e-6);
    }
}

} // namespace
} // namespace platform
