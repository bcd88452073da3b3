#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/TextColumn.h"

namespace sorvane {

/// Cells as categories: their distinct texts as they stand, in order of first appearance, and the
/// position of each cell's text among them.
struct CategoryCodes {
    std::vector<std::string> labels{};
    /// One per cell.
    std::vector<std::uint32_t> codes{};

    /// The given rows of a column, in none of which its cell is missing.
    ///
    /// Cost       O(rows) and a look at each level that occurs
    static CategoryCodes of(const TextColumn& column, std::span<const std::uint32_t> rows);

    /// Orders the categories by label, as people read lists: case counts for nothing,
    /// and labels that are then equal stand in the order of their bytes.
    void sortByLabel();

    /// How many cells have each category.
    std::vector<std::int64_t> counts() const;
};

}  // namespace sorvane
