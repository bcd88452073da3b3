#pragma once

#include <optional>
#include <string_view>

#include "SorvaneCore/Import/TabularImport.h"

/// Reads SPSS system files: labels, value labels, user-missing values, dates, compressed and plain
/// data.
namespace sorvane::SPSSReader {

/// The table of a file.
///
/// Method     as `readRaw`; where that fails and the bytes are valid UTF-8, once more after undoing
///            a conversion from Latin-1 to UTF-8, which a transfer as text can have made
/// Failure    not a system file, or damaged -> absent
std::optional<TabularImport> read(std::string_view bytes);

/// The table of the bytes as they stand.
///
/// Method     case counts come from the data, not from the header; a last case cut short is left
///            out; only NaN and the mark of compressed data are missing numbers
/// Failure    as above
/// Cost       O(cells); see readSPSSTable
std::optional<TabularImport> readRaw(std::string_view bytes);

}  // namespace sorvane::SPSSReader
