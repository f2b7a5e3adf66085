// SPDX-License-Identifier: MIT
#include "platform/uikit/LinearSolver.h"

#include "platform/foundation/Precondition.h"

#include <cmath>
#include <limits>
#include <utility>

namespace platform {

namespace {

constexpr double epsilon = 1e-9;
// Contradictions smaller than this many points are rounding.
constexpr double tolerance = 1e-6;
constexpr LinearSolver::Variable none = -1;

} // namespace

double LinearSolver::Row::coefficient(Symbol symbol) const
{
    auto found = cells.find(symbol);
    return found == cells.end() ? 0 : found->second;
}

void LinearSolver::Row::add(Symbol symbol, double coefficient)
{
    auto [cell, isNew] = cells.try_emplace(symbol, 0.0);
    cell->second += coefficient;
    if (std::abs(cell->second) < epsilon)
        cells.erase(cell);
}

void LinearSolver::Row::add(const Row& other, double factor)
{
    constant += other.constant * factor;
    for (auto& [symbol, coefficient] : other.cells)
        add(symbol, coefficient * factor);
}

void LinearSolver::Row::replace(Symbol symbol, const Row& by)
{
    auto found = cells.find(symbol);
    if (found == cells.end())
        return;
    auto factor = found->second;
    cells.erase(found);
    add(by, factor);
}

void LinearSolver::Row::solveFor(Symbol symbol)
{
    auto found = cells.find(symbol);
    auto factor = -1 / found->second;
    cells.erase(found);
    constant *= factor;
    for (auto& cell : cells)
        cell.second *= factor;
}

LinearSolver::LinearSolver(std::size_t levels)
    : objective_(levels)
{
}

LinearSolver::Symbol LinearSolver::addSymbol(bool isRestricted)
{
    isRestricted_.push_back(isRestricted);
    return static_cast<Symbol>(isRestricted_.size()) - 1;
}

LinearSolver::Variable LinearSolver::addVariable()
{
    return addSymbol(false);
}

LinearSolver::Row LinearSolver::rowFor(std::span<const Term> terms, double constant) const
{
    Row row{.constant = constant, .cells = {}};
    for (auto& term : terms) {
        auto basic = rows_.find(term.variable);
        if (basic != rows_.end())
            row.add(basic->second, term.coefficient);
        else if (term.coefficient != 0)
            row.add(term.variable, term.coefficient);
    }
    return row;
}

// Makes `basic` the subject of `0 = row` everywhere.
void LinearSolver::place(Symbol basic, Row row)
{
    row.solveFor(basic);
    for (auto& entry : rows_)
        entry.second.replace(basic, row);
    for (auto& level : objective_)
        level.replace(basic, row);
    rows_.insert_or_assign(basic, std::move(row));
}

bool LinearSolver::require(std::span<const Term> terms, Relation relation, double constant)
{
    auto row = rowFor(terms, constant);
    auto slack = none;
    if (relation != Relation::equal) {
        slack = addSymbol(true);
        row.add(slack, relation == Relation::lessThanOrEqual ? 1 : -1);
    }
    for (auto& [symbol, coefficient] : row.cells)
        if (!isRestricted(symbol)) {
            place(symbol, std::move(row));
            return true;
        }
    // The slack itself can be the subject where that leaves it not negative.
    if (slack != none && row.constant * row.coefficient(slack) <= 0) {
        place(slack, std::move(row));
        return true;
    }
    if (row.cells.empty())
        return std::abs(row.constant) < tolerance;
    return placeWithArtificial(std::move(row));
}

void LinearSolver::prefer(std::span<const Term> terms, Relation relation, double constant, std::size_t level)
{
    precondition(level < objective_.size(), "the level of a preference is out of range");
    auto row = rowFor(terms, constant);
    // 0 = sum - above + below: how far the sum is above and below zero. What the relation does not mind costs
    // nothing.
    auto above = addSymbol(true), below = addSymbol(true);
    row.add(above, -1);
    row.add(below, 1);
    if (relation != Relation::greaterThanOrEqual)
        objective_[level].add(above, 1);
    if (relation != Relation::lessThanOrEqual)
        objective_[level].add(below, 1);
    for (auto& [symbol, coefficient] : row.cells)
        if (!isRestricted(symbol)) {
            place(symbol, std::move(row));
            return;
        }
    place(row.constant >= 0 ? above : below, std::move(row));
}

// Phase one of the simplex method: an artificial variable makes the row hold, then it is made as small as can be. Is
// that not zero, the row contradicts the others, and what the artificial variable stands for is dropped.
bool LinearSolver::placeWithArtificial(Row row)
{
    if (row.constant < 0) {
        row.constant = -row.constant;
        for (auto& cell : row.cells)
            cell.second = -cell.second;
    }
    auto artificial = addSymbol(true);
    Row objective[] = {row};
    rows_.insert_or_assign(artificial, std::move(row));
    optimise(objective);

    auto holds = std::abs(objective[0].constant) < tolerance;
    if (auto found = rows_.find(artificial); found != rows_.end()) {
        if (holds && !found->second.cells.empty())
            pivot(artificial, found->second.cells.begin()->first, {});
        else
            rows_.erase(found);
    }
    for (auto& entry : rows_)
        entry.second.cells.erase(artificial);
    for (auto& level : objective_)
        level.cells.erase(artificial);
    return holds;
}

void LinearSolver::solve()
{
    optimise(objective_);
}

double LinearSolver::value(Variable variable) const
{
    auto found = rows_.find(variable);
    return found == rows_.end() ? 0 : found->second.constant;
}

void LinearSolver::optimise(std::span<Row> objective)
{
    // Rounding may break the rule that keeps it from running in circles; no layout needs this many.
    for (auto steps = 100 * isRestricted_.size(); steps > 0; --steps) {
        auto in = entering(objective);
        if (in == none)
            return;
        auto out = leaving(in);
        if (out == none)
            return; // nothing limits it; errors are bounded below, so this is rounding
        // The objective of phase one is not a member and has to follow.
        pivot(out, in, objective.data() == objective_.data() ? std::span<Row>{} : objective);
    }
}

// The first symbol whose growth makes the objective smaller (Bland's rule: with the smallest leaving symbol
// among equals this cannot run in circles).
LinearSolver::Symbol LinearSolver::entering(std::span<const Row> objective) const
{
    auto best = none;
    for (std::size_t level = 0; level < objective.size(); ++level)
        for (auto& [symbol, cost] : objective[level].cells) {
            if (cost >= -epsilon || !isRestricted(symbol) || (best != none && symbol >= best))
                continue;
            auto costsAbove = false;
            for (std::size_t higher = 0; higher < level && !costsAbove; ++higher)
                costsAbove = std::abs(objective[higher].coefficient(symbol)) > epsilon;
            if (!costsAbove)
                best = symbol;
        }
    return best;
}

// The basic symbol that is the first to reach zero when `entering` grows.
LinearSolver::Symbol LinearSolver::leaving(Symbol entering) const
{
    auto best = none;
    auto least = std::numeric_limits<double>::infinity();
    for (auto& [symbol, row] : rows_) {
        if (!isRestricted(symbol))
            continue;
        auto coefficient = row.coefficient(entering);
        if (coefficient >= -epsilon)
            continue;
        auto ratio = -row.constant / coefficient;
        if (ratio < least) {
            least = ratio;
            best = symbol;
        }
    }
    return best;
}

void LinearSolver::pivot(Symbol leaving, Symbol entering, std::span<Row> alsoIn)
{
    auto row = std::move(rows_.at(leaving));
    rows_.erase(leaving);
    row.add(leaving, -1);
    row.solveFor(entering);
    for (auto& entry : rows_)
        entry.second.replace(entering, row);
    for (auto& level : objective_)
        level.replace(entering, row);
    for (auto& level : alsoIn)
        level.replace(entering, row);
    rows_.insert_or_assign(entering, std::move(row));
}

} // namespace platform
