#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/TextColumn.h"

namespace sorvane {

/// How often each category of one column meets each of another. Categories are in order of first
/// appearance among the rows in which neither cell is missing.
struct CategoryTable {
    std::vector<std::string> rowLabels{};
    std::vector<std::string> columnLabels{};
    /// By row, then by column.
    std::vector<std::vector<std::int64_t>> counts{};
    std::vector<std::int64_t> rowTotals{};
    std::vector<std::int64_t> columnTotals{};
    std::int64_t grandTotal = 0;
    /// Pairs left out because a cell of theirs is missing.
    std::int64_t excludedPairs = 0;

    /// Failure    lengths that differ, or no complete pair -> absent
    static std::optional<CategoryTable> of(const TextColumn& rowCategories,
                                           const TextColumn& columnCategories);
};

}  // namespace sorvane
