#pragma once

#include <optional>
#include <string_view>

#include "SorvaneCore/Import/Stata/StataFile.h"
#include "SorvaneCore/Import/TabularImport.h"

/// Reads Stata data files of the tagged form, releases 117 to 119.
namespace sorvane::StataReader {

/// The table of a file.
///
/// Method     formats are not read, so that a date stays a number; labels are not applied to cells.
///            A release that is tagged but not supported gives a table without variables and a note
/// Failure    no tagged file, a malformed header or map, data that are cut short -> absent
/// Cost       O(cells); see readStataTable
std::optional<TabularImport> read(std::string_view bytes,
                                  StataStringReferences references = StataStringReferences::stated);

}  // namespace sorvane::StataReader
