// SPDX-License-Identifier: MIT
#include "platform/swiftui/RowTable.h"

#include <algorithm>
#include <typeinfo>
#include <utility>

namespace platform {

namespace {

// Whether what stands at one place of the description may be the same rows.
bool isComparable(const RowRun& a, const RowRun& b)
{
    const auto &x = *a.source, &y = *b.source;
    return a.place == b.place && a.kind == b.kind && typeid(x) == typeid(y);
}

} // namespace

RowTable::RowTable(RowSources rows)
    : rows_(std::move(rows))
    , starts_(1, 0)
{
    for (const auto& run : rows_.runs)
        starts_.push_back(starts_.back() + run.source->count());
}

RowTable::Place RowTable::at(std::size_t row) const
{
    auto next = std::ranges::upper_bound(starts_, row);
    auto run = static_cast<std::size_t>(next - starts_.begin()) - 1;
    return {rows_.runs[run], row - starts_[run]};
}

bool RowTable::hasSameRows(const RowTable& other) const
{
    return std::ranges::equal(rows_.runs, other.rows_.runs, [](const RowRun& a, const RowRun& b) {
        return isComparable(a, b) && a.section == b.section && a.source->hasSameRows(*b.source);
    });
}

std::vector<std::optional<std::size_t>> RowTable::follow(const RowTable& former,
                                                         const std::vector<std::size_t>& rows) const
{
    std::vector<std::optional<std::size_t>> result;
    auto next = rows.begin();
    for (std::size_t run = 0; run < former.rows_.runs.size(); ++run) {
        std::vector<std::size_t> inRun;
        for (; next != rows.end() && *next < former.starts_[run + 1]; ++next)
            inRun.push_back(*next - former.starts_[run]);
        if (inRun.empty())
            continue;
        const auto& before = former.rows_.runs[run];
        auto now =
            std::ranges::find_if(rows_.runs, [&](const RowRun& each) { return isComparable(each, before); });
        if (now == rows_.runs.end()) {
            result.resize(result.size() + inRun.size());
            continue;
        }
        auto start = starts_[static_cast<std::size_t>(now - rows_.runs.begin())];
        for (auto& row : now->source->follow(*before.source, inRun))
            result.push_back(row ? std::optional(start + *row) : std::nullopt);
    }
    return result;
}

} // namespace platform
