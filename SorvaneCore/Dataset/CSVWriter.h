#pragma once

#include <string>

#include "SorvaneCore/Dataset/ImportedDataset.h"

namespace sorvane::CSVWriter {

/// The table as comma-separated text: the headers, then a line a row, each ended by LF.
///
/// Method     a cell with a comma, a quotation mark or a line break stands in quotation marks,
///            which are doubled inside it; every other cell stands as it is
/// Cost       quoted once per distinct text, about 10 ns a cell
std::string text(const ImportedDataset& dataset);

}  // namespace sorvane::CSVWriter
