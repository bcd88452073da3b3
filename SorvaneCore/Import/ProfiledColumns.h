#pragma once

#include <cstdint>
#include <vector>

#include "SorvaneCore/Dataset/TextTable.h"

namespace sorvane {

/// Has every column of a table profiled, several at a time where the table is large.
void profileColumns(const TextTable& table);

/// How many cells of each row are missing.
///
/// Cost       O(rows) for each column that has missing cells
std::vector<std::uint32_t> missingCellsPerRow(const TextTable& table);

}  // namespace sorvane
