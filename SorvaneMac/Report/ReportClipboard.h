#pragma once

#include <string>
#include <string_view>

#include "SorvaneMac/Report/ReportItem.h"

/// A table as the clipboard carries it; both forms go there at once.
namespace sorvane::ReportClipboard {

/// The table as HTML, for Word and spreadsheets.
///
/// Input      title: empty for none
/// Method     normalised first; rules above, below and under the heads; the first column left, the
///            others centred; line ends inside a cell become blanks, so that a spreadsheet keeps it
///            one cell
std::string html(std::string_view title, const ReportTable& table);

/// The table as text: a line a row with tabs between the cells, "Note. " and the note.
///
/// Method     as for HTML; a spanning head is followed by a tab for each column it covers
std::string plainText(const ReportTable& table);

}  // namespace sorvane::ReportClipboard
