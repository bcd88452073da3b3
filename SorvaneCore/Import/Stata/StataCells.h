#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "SorvaneCore/Dataset/TextTable.h"
#include "SorvaneCore/Import/Stata/StataFile.h"

namespace sorvane {

/// The cells of a Stata data file as texts.
struct StataTable {
    TextTable rows;
    /// Indexes of columns with a number too large to be data, or the plain missing value of a
    /// single-precision column.
    std::vector<std::size_t> implausibleColumns;
    /// Indexes of columns that would read otherwise with references of 8 bytes, if the file proves
    /// that it has such.
    std::vector<std::size_t> shiftedColumns;
};

/// Reads all observations.
///
/// Method     the columns of a block of observations at once; each distinct number of a column is
///            turned into text once. That references have 8 bytes is proven by the length of the
///            data section, in release 117 by references found so and not otherwise. Where it is
///            proven and the file is too short for the widths asked for, only the rows that lie
///            whole in the section by these are read, the cells of all others are missing, and all
///            columns are named as shifted
/// Failure    no data section, one that is cut short by any widths, long texts referred to far more
///            often than a file of that size can mean -> absent
/// Cost       about 3 ns a cell of few distinct values
std::optional<StataTable> readStataTable(const StataFile& file, StataStringReferences references);

/// A whole number below 10^15 in plain digits, any other with up to ten significant digits.
std::string stataNumberText(double value);

}  // namespace sorvane
