#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/ImportedDataset.h"

/// Edits of the data grid. Each keeps the variables and the import record true to the cells.
namespace sorvane::DatasetGridEditor {

/// Headers trimmed, filled and made unique as an import does it.
std::vector<std::string> sanitizeHeaders(std::span<const std::string> headers);

/// Classifies every column anew and rebuilds the import record.
///
/// Method     a variable keeps its id, label, value labels, role, construct, scale range and
///            inclusions; it takes the inferred role, counts, summary, samples and warnings. The
///            record keeps its source kind and worksheet name, and has no issues
/// Cost       O(rows) for the row counts, and the profiles of the columns that have changed since
///            they were last asked for, as a column keeps its profile
void refreshMetadata(ImportedDataset& dataset);

/// Writes the text into one cell, as it stands, and refreshes the metadata.
///
/// Input      `row` and `column` inside the table
/// Cost       about 1 ms for 10,000 rows and 200 columns: one column is gathered and profiled
void setCell(ImportedDataset& dataset, std::size_t row, std::size_t column, std::string_view text);

/// Cuts rows from the end or appends rows of empty cells, and refreshes the metadata.
void resizeRows(ImportedDataset& dataset, std::size_t rowCount);

/// Appends a column of empty cells for each header and refreshes the metadata.
///
/// Input      headers that the dataset does not have yet
void appendColumns(ImportedDataset& dataset, std::span<const std::string> headers);

/// Writes a block of cells from a place on, and refreshes the metadata.
///
/// Input      rows of cells that all lie inside the table; they may differ in length
/// Cost       one pass over each column that is touched
void writeBlock(ImportedDataset& dataset,
                std::size_t row,
                std::size_t column,
                std::span<const std::vector<std::string>> cells);

/// The cells of a block as spreadsheets put it on the clipboard: lines of tab-separated text, a
/// cell with a tab or a line break in quotation marks. An empty last line counts for nothing.
std::vector<std::vector<std::string>> pastedCells(std::string_view text);

}  // namespace sorvane::DatasetGridEditor
