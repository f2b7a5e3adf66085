// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <span>
#include <vector>

namespace platform {

// Finds values that satisfy linear equations and inequalities, those of higher levels before those of lower ones:
// the Cassowary method (a simplex tableau that keeps unrestricted variables apart, with errors of optional
// constraints as its objective, compared level by level). Built, solved and read once. Any one thread.
class LinearSolver {
public:
    using Variable = int;
    enum class Relation { lessThanOrEqual = -1, equal = 0, greaterThanOrEqual = 1 };
    struct Term {
        Variable variable = 0;
        double coefficient = 1;
    };

    // `levels` kinds of optional constraints, 0 the most important: no gain on a lower level outweighs a loss on a
    // higher one.
    explicit LinearSolver(std::size_t levels);

    // May take any value; 0 unless constraints say otherwise.
    Variable addVariable();

    // The sum of terms and `constant` stands in `relation` to 0. False, and no change, when it contradicts those
    // required before. Requires: finite numbers.
    [[nodiscard]] bool require(std::span<const Term> terms, Relation relation, double constant);
    // Holds as nearly as those of the same and of higher levels allow. Requires: level < levels.
    void prefer(std::span<const Term> terms, Relation relation, double constant, std::size_t level);

    // Values that satisfy all that was asked for so far. More may be asked for afterwards, and solved again.
    void solve();
    // After solve(): whether the sum of terms can have no other value without a loss on some level.
    bool isDetermined(std::span<const Term> terms) const;
    double value(Variable variable) const; // after solve()

private:
    // Variables of the tableau: the caller's are unrestricted, all others are not negative.
    using Symbol = int;
    struct Cell {
        Symbol symbol = 0;
        double coefficient = 0;
    };
    struct Row {
        double constant = 0;
        std::vector<Cell> cells; // by symbol

        double coefficient(Symbol symbol) const;
        void remove(Symbol symbol);
        void add(Symbol symbol, double coefficient);
        void add(const Row& other, double factor);
        void replace(Symbol symbol, const Row& by);
        // From `0 = row` (or `basic = row`) to `symbol = row`.
        void solveFor(Symbol symbol);
    };

    bool isRestricted(Symbol symbol) const { return isRestricted_[static_cast<std::size_t>(symbol)]; }
    Symbol addSymbol(bool isRestricted);
    Row rowFor(std::span<const Term> terms, double constant) const;
    void place(Symbol basic, Row row);
    void insert(Symbol basic, Row row);
    void substitute(Symbol symbol, const Row& by);
    const std::vector<Symbol>& rowsWith(Symbol symbol) const;
    bool placeWithArtificial(Row row);
    void optimise(std::span<Row> objective);
    Symbol entering(std::span<const Row> objective) const;
    Symbol leaving(Symbol entering) const;
    void pivot(Symbol leaving, Symbol entering, std::span<Row> alsoIn);

    std::vector<bool> isRestricted_; // by symbol
    std::map<Symbol, Row> rows_;     // basic symbol = row of non-basic ones
    // By symbol: the rows that have it, and some that had it once; put in order when it is read.
    mutable std::vector<std::vector<Symbol>> columns_;
    std::vector<Row> objective_; // by level: what is to become small
};

} // namespace platform
