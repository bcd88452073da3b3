#include "SorvaneCore/Import/Excel/WorksheetTable.h"

#include <algorithm>

#include "SorvaneCore/Dataset/MissingValue.h"

namespace sorvane {

namespace {

/// A table may have so many cells, whatever the worksheet's size; beyond that, so many for each of
/// its bytes. A cell with a value takes some 20 bytes.
constexpr std::size_t cellsFloor = std::size_t{1} << 26;
constexpr std::size_t cellsPerByte = 64;

void fillUp(TextColumnBuilder& column, std::size_t rowCount) {
    while (column.size() < rowCount) {
        column.append(std::string_view());
    }
}

}  // namespace

WorksheetTable::WorksheetTable(std::size_t documentSize)
    : mostCells_(cellsFloor + cellsPerByte * documentSize) {}

void WorksheetTable::add(std::int64_t sourceRowNumber, std::span<const WorksheetCell> cells) {
    if (headers_.empty()) {
        addHeader(cells);
        return;
    }
    const std::size_t row = reports_.size();
    isTooSparse_ = isTooSparse_ || (row + 1) * columns_.size() > mostCells_;
    if (isTooSparse_) {
        return;
    }
    for (const WorksheetCell& cell : cells) {
        if (cell.column < columns_.size()) {
            fillUp(columns_[cell.column], row);
            columns_[cell.column].append(cell.text);
        }
    }
    const std::size_t width = cells.back().column + 1;
    if (width == columns_.size()) {
        reports_.appendOrdinary(sourceRowNumber, 1);
    } else {
        reports_.append(ImportRowNormalizationReport::of(
            sourceRowNumber, static_cast<std::int64_t>(width), reports_.columnCount()));
    }
}

void WorksheetTable::addHeader(std::span<const WorksheetCell> cells) {
    const auto values = std::count_if(cells.begin(), cells.end(), [](const WorksheetCell& cell) {
        return !MissingValue::isMissing(cell.text);
    });
    if (values < 2) {
        return;
    }
    headers_.resize(cells.back().column + 1);
    for (const WorksheetCell& cell : cells) {
        headers_[cell.column] = cell.text;
    }
    columns_.resize(headers_.size());
    reports_ = ImportRowReports(static_cast<std::int64_t>(headers_.size()));
}

TextTable WorksheetTable::finish() {
    const std::size_t rowCount = reports_.size();
    const TextTable::Column blank = TextColumn::blank(rowCount);
    std::vector<TextTable::Column> columns;
    columns.reserve(columns_.size());
    for (TextColumnBuilder& column : columns_) {
        if (column.size() == 0) {
            columns.push_back(blank);
        } else {
            fillUp(column, rowCount);
            columns.push_back(column.finish());
        }
    }
    return {std::move(columns), rowCount};
}

}  // namespace sorvane
