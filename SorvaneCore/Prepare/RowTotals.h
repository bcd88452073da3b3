#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

/// What the present cells of one row come to.
struct RowTotal {
    std::uint32_t count = 0;
    /// In column order.
    double sum = 0.0;
    double smallest = std::numeric_limits<double>::infinity();
    double largest = -std::numeric_limits<double>::infinity();

    void add(double value) {
        ++count;
        sum += value;
        smallest = std::min(smallest, value);
        largest = std::max(largest, value);
    }
};

/// Rows of several columns taken together, column by column within blocks that stay in the cache.
namespace RowTotals {

constexpr std::size_t blockRows = 1024;

/// The rows of the longest column.
inline std::size_t rowCount(std::span<const NumericColumn> columns) {
    std::size_t rows = 0;
    for (const NumericColumn& column : columns) {
        rows = std::max(rows, column.size());
    }
    return rows;
}

/// Adds a column's cells from `firstRow` on to the totals of a block.
inline void add(const NumericColumn& column, std::size_t firstRow, std::span<RowTotal> block) {
    const std::span<const std::optional<double>> levels = column.levels();
    const std::size_t end = std::min(firstRow + block.size(), column.size());
    column.withCodes([levels, firstRow, end, block](const auto& codes) {
        for (std::size_t row = firstRow; row < end; ++row) {
            const std::optional<double>& value = levels[codes[row]];
            if (value) {
                block[row - firstRow].add(*value);
            }
        }
    });
}

/// Calls `use` with the total of each row, in row order.
///
/// Cost       O(rows * columns)
template <typename Use>
void forEach(std::span<const NumericColumn> columns, Use&& use) {
    const std::size_t rows = rowCount(columns);
    std::vector<RowTotal> block;
    for (std::size_t first = 0; first < rows; first += blockRows) {
        block.assign(std::min(blockRows, rows - first), RowTotal());
        for (const NumericColumn& column : columns) {
            add(column, first, block);
        }
        for (const RowTotal& total : block) {
            use(total);
        }
    }
}

}  // namespace RowTotals

}  // namespace sorvane
