// SPDX-License-Identifier: MIT
#include "platform/uikit/LinearSolver.h"

#include "platform/foundation/Precondition.h"

#include <algorithm>
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
    auto found = std::ranges::lower_bound(cells, symbol, {}, &Cell::symbol);
    return found != cells.end() && found->symbol == symbol ? found->coefficient : 0;
}

void LinearSolver::Row::remove(Symbol symbol)
{
    auto found = std::ranges::lower_bound(cells, symbol, {}, &Cell::symbol);
    if (found != cells.end() && found->symbol == symbol)
        cells.erase(found);
}

void LinearSolver::Row::add(Symbol symbol, double coefficient)
{
    auto found = std::ranges::lower_bound(cells, symbol, {}, &Cell::symbol);
    if (found == cells.end() || found->symbol != symbol)
        found = cells.insert(found, {symbol, 0});
    found->coefficient += coefficient;
    if (std::abs(found->coefficient) < epsilon)
        cells.erase(found);
}

// Both are sorted: one pass merges them.
void LinearSolver::Row::add(const Row& other, double factor)
{
    constant += other.constant * factor;
    std::vector<Cell> sum;
    sum.reserve(cells.size() + other.cells.size());
    auto mine = cells.begin();
    auto put = [&](Cell cell) {
        if (std::abs(cell.coefficient) >= epsilon)
            sum.push_back(cell);
    };
    for (auto& cell : other.cells) {
        for (; mine != cells.end() && mine->symbol < cell.symbol; ++mine)
            sum.push_back(*mine);
        if (mine != cells.end() && mine->symbol == cell.symbol)
            put({cell.symbol, (mine++)->coefficient + cell.coefficient * factor});
        else
            put({cell.symbol, cell.coefficient * factor});
    }
    sum.insert(sum.end(), mine, cells.end());
    cells = std::move(sum);
}

void LinearSolver::Row::replace(Symbol symbol, const Row& by)
{
    auto factor = coefficient(symbol);
    if (factor == 0)
        return;
    remove(symbol);
    add(by, factor);
}

void LinearSolver::Row::solveFor(Symbol symbol)
{
    auto factor = -1 / coefficient(symbol);
    remove(symbol);
    constant *= factor;
    for (auto& cell : cells)
        cell.coefficient *= factor;
}

LinearSolver::LinearSolver(std::size_t levels)
    : objective_(levels)
{
}

LinearSolver::Symbol LinearSolver::addSymbol(bool isRestricted)
{
    isRestricted_.push_back(isRestricted);
    columns_.emplace_back();
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
    substitute(basic, row);
    insert(basic, std::move(row));
}

void LinearSolver::insert(Symbol basic, Row row)
{
    for (auto& cell : row.cells)
        columns_[static_cast<std::size_t>(cell.symbol)].push_back(basic);
    rows_.insert_or_assign(basic, std::move(row));
}

void LinearSolver::substitute(Symbol symbol, const Row& by)
{
    for (auto basic : rowsWith(symbol)) {
        auto found = rows_.find(basic);
        if (found == rows_.end())
            continue;
        found->second.replace(symbol, by);
        for (auto& cell : by.cells)
            columns_[static_cast<std::size_t>(cell.symbol)].push_back(basic);
    }
    columns_[static_cast<std::size_t>(symbol)].clear();
    for (auto& level : objective_)
        level.replace(symbol, by);
}

const std::vector<LinearSolver::Symbol>& LinearSolver::rowsWith(Symbol symbol) const
{
    auto& column = columns_[static_cast<std::size_t>(symbol)];
    std::ranges::sort(column);
    auto same = std::ranges::unique(column);
    column.erase(same.begin(), same.end());
    return column;
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
            cell.coefficient = -cell.coefficient;
    }
    auto artificial = addSymbol(true);
    Row objective[] = {row};
    insert(artificial, std::move(row));
    optimise(objective);

    auto holds = std::abs(objective[0].constant) < tolerance;
    if (auto found = rows_.find(artificial); found != rows_.end()) {
        if (holds && !found->second.cells.empty())
            pivot(artificial, found->second.cells.front().symbol, {});
        else
            rows_.erase(found);
    }
    for (auto& entry : rows_)
        entry.second.remove(artificial);
    for (auto& level : objective_)
        level.remove(artificial);
    return holds;
}

void LinearSolver::solve()
{
    optimise(objective_);
}

bool LinearSolver::isDetermined(std::span<const Term> terms) const
{
    // Symbols outside of the basis are zero. Where each of them costs something, all best solutions have them so.
    auto row = rowFor(terms, 0);
    return std::ranges::all_of(row.cells, [this](const Cell& cell) {
        return isRestricted(cell.symbol) && std::ranges::any_of(objective_, [&](const Row& level) {
                   return std::abs(level.coefficient(cell.symbol)) > epsilon;
               });
    });
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
    for (auto symbol : rowsWith(entering)) {
        auto found = rows_.find(symbol);
        if (found == rows_.end() || !isRestricted(symbol))
            continue;
        auto& row = found->second;
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
    substitute(entering, row);
    for (auto& level : alsoIn)
        level.replace(entering, row);
    insert(entering, std::move(row));
}

} // namespace platform
