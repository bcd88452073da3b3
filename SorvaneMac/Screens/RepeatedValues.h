#pragma once

#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/NamedNumericGroup.h"
#include "SorvaneCore/Dataset/ImportedDataset.h"

namespace sorvane {

/// The columns' values in the rows that have a number in every one of them, in row order.
///
/// Cost       O(rows * columns)
std::vector<NamedNumericGroup> completeColumns(const ImportedDataset& dataset,
                                               const std::vector<std::string>& names);

}  // namespace sorvane
