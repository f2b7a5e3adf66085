// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/LazyRows.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace platform {

// The rows of several runs, counted through. A value. Main thread only.
class RowTable {
public:
    explicit RowTable(RowSources rows = {});

    std::size_t count() const { return starts_.back(); }
    struct Place {
        const RowRun& run; // as long as the table is unchanged
        std::size_t index; // in its source
    };
    Place at(std::size_t row) const; // Requires: the row exists
    // Whether every row is the same as the other's of that number.
    bool hasSameRows(const RowTable& other) const;
    // Where rows of a former table are in this one; none: gone. `rows` ascend.
    std::vector<std::optional<std::size_t>> follow(const RowTable& former,
                                                   const std::vector<std::size_t>& rows) const;

private:
    RowSources rows_;
    std::vector<std::size_t> starts_; // of each run, and the count of all
};

} // namespace platform
