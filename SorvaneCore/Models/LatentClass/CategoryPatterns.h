#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/TextColumn.h"

namespace sorvane {

/// The complete rows of some columns of categories, as the patterns of answers that occur.
struct CategoryPatterns {
    /// The trimmed texts of each column's complete rows, in order of first appearance.
    std::vector<std::vector<std::string>> categories{};
    /// The category of each column in each pattern, pattern by pattern.
    std::vector<std::uint32_t> codes{};
    /// How many rows have each pattern; patterns stand in order of first appearance.
    std::vector<double> counts{};
    /// The pattern of each complete row.
    std::vector<std::uint32_t> patternOf{};

    std::size_t columns() const { return categories.size(); }
    std::size_t rows() const { return patternOf.size(); }

    /// Input      columns of one length; a row with a cell that is blank when trimmed is left out
    /// Cost       O(rows * columns)
    static CategoryPatterns of(std::span<const TextColumn* const> columns);
};

}  // namespace sorvane
