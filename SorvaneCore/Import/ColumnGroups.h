#pragma once

#include <algorithm>
#include <cstddef>

#include "SorvaneCore/Numerics/ParallelFor.h"

namespace sorvane {

/// How many neighbouring columns of a file of rows are read together: their cells share the cache
/// lines of a row.
inline constexpr std::size_t columnsPerGroup = 8;
/// Rows whose cells of a group stay in the cache while column after column reads them.
inline constexpr std::size_t rowsPerStretch = 1024;
/// Fewer cells are read before another thread has started.
inline constexpr std::size_t cellsWorthThreads = 50'000;

/// Calls `take(column, firstRow, rowCount)` so that every column gets all rows in order, several
/// groups of columns at a time.
template <typename Take>
void forEachColumnStretch(std::size_t columnCount, std::size_t rowCount, const Take& take) {
    const std::size_t groups = (columnCount + columnsPerGroup - 1) / columnsPerGroup;
    const bool isLarge = rowCount * columnCount >= cellsWorthThreads;
    parallelFor(groups, isLarge ? hardwareThreads() : 1, [&](std::size_t group) {
        const std::size_t begin = group * columnsPerGroup;
        const std::size_t end = std::min(begin + columnsPerGroup, columnCount);
        for (std::size_t row = 0; row < rowCount; row += rowsPerStretch) {
            for (std::size_t column = begin; column < end; ++column) {
                take(column, row, std::min(rowsPerStretch, rowCount - row));
            }
        }
    });
}

}  // namespace sorvane
