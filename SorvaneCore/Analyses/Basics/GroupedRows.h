#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/NamedNumericGroup.h"
#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Dataset/TextColumn.h"

namespace sorvane {

/// The rows of a table by the label of their group.
struct GroupedRows {
    struct Group {
        /// The text of the cell as it stands.
        std::string label{};
        /// The outcomes that are present, in row order.
        std::vector<double> values{};
        /// Rows of the group without an outcome.
        std::int64_t missingN = 0;
    };

    /// In order of first appearance.
    std::vector<Group> groups{};
    /// Rows read, and those among them whose group is missing.
    std::int64_t rows = 0;
    std::int64_t missingGroupRows = 0;

    /// Method     up to the end of the shorter column; labels are decided once per level
    /// Cost       O(rows + levels)
    static GroupedRows of(const TextColumn& groupCells, const NumericColumn& outcomes);

    /// Orders the groups by label, as people read lists: case counts for nothing.
    void sortByLabel();
    /// Moves the values of the groups that have at least `fewest` out of here.
    std::vector<NamedNumericGroup> takeGroups(std::size_t fewest);
};

}  // namespace sorvane
