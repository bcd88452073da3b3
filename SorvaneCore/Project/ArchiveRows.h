#pragma once

#include <cstddef>

#include "SorvaneCore/Dataset/TextTable.h"

namespace sorvane {

class JsonStream;

/// Reads the list of rows of a project.
namespace ArchiveRows {

/// The table of the rows that the stream gives next, a list of lists of texts.
///
/// Method     whole rows are cut out of the stream in windows of a few megabytes; while one window
///            is parsed, the next one is read
/// Returns    a table of `columnCount` columns: short rows padded, long ones cut
/// Failure    anything but lists of texts; rows so much too short that padding them would fill the
///            memory -> ProjectArchiveError
TextTable read(JsonStream& stream, std::size_t columnCount);

}  // namespace ArchiveRows

}  // namespace sorvane
