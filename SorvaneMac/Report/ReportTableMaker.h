#pragma once

#include <string_view>
#include <vector>

#include "SorvaneMac/Report/ReportItem.h"
#include "SorvaneMac/Report/RichDocument.h"

namespace sorvane::ReportTableMaker {

/// A table in APA style: number and caption above it, three horizontal rules, the note below.
///
/// Input      caption: the table's title; number: its number in the report, which also tells its
///            cells from those of other tables
/// Method     the table is normalised first; spanning heads, heads, then body; the first column is
///            set left, the others centred; short rows are filled with empty cells so that the
///            rules run across
/// Cost       linear in the cells
std::vector<Paragraph> apaTable(const ReportTable& table, int number, std::string_view caption);

}  // namespace sorvane::ReportTableMaker
