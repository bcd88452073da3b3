#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/TextTable.h"
#include "SorvaneCore/Import/SPSS/SPSSDictionary.h"
#include "SorvaneCore/Import/SPSS/SPSSNumbers.h"

namespace sorvane {

/// A variable after its continuation records are folded in.
struct SPSSVariable {
    std::string name;
    /// Empty where there is none.
    std::string label;
    std::int32_t typeCode = 0;
    SPSSNumbers::Format format;
    std::optional<MissingSpec> missing;
    std::size_t firstSlot = 0;
    std::size_t slotCount = 1;

    bool isString() const { return typeCode != 0; }
};

/// The cells of a system file as texts.
struct SPSSTable {
    TextTable rows;
    /// Cells that a declaration of user-missing values made blank.
    std::uint64_t userMissingCells = 0;
    /// Indexes of columns with a number too large to be data.
    std::vector<std::size_t> implausibleColumns;
};

/// Reads all cases.
///
/// Method     block by block, the columns of a block at once; each distinct number of a column is
///            turned into text once
/// Failure    compressed data that break off inside a value, or whose few bytes stand for numbers of
///            far too many digits -> absent
/// Cost       about 3 ns a cell of few distinct values
std::optional<SPSSTable> readSPSSTable(const SPSSDictionary& dictionary,
                                       const std::vector<SPSSVariable>& variables,
                                       std::string_view data);

}  // namespace sorvane
