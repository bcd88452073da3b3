#include "SorvaneCore/Import/Excel/WorksheetTable.h"

#include <algorithm>

#include "SorvaneCore/Dataset/MissingValue.h"

namespace sorvane {

namespace {

/// Headers are copied to variables, summaries and issues, and cells can share one long text.
constexpr std::size_t mostHeaderBytes = std::size_t{16} << 20;

}  // namespace

void WorksheetTable::add(std::int64_t sourceRowNumber, std::span<const WorksheetCell> cells) {
    if (headers_.empty() && !isTooLarge_) {
        addHeader(cells);
        return;
    }
    const std::size_t row = reports_.size();
    isTooLarge_ = isTooLarge_ || columns_.isTooLarge(row + 1);
    if (isTooLarge_) {
        return;
    }
    for (const WorksheetCell& cell : cells) {
        if (cell.column < columns_.columnCount()) {
            columns_.set(row, cell.column, cell.text);
        }
    }
    const std::size_t width = cells.back().column + 1;
    if (width == columns_.columnCount()) {
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
    std::size_t headerBytes = 0;
    for (const WorksheetCell& cell : cells) {
        headerBytes += cell.text.size();
    }
    isTooLarge_ = headerBytes > mostHeaderBytes;
    if (isTooLarge_) {
        return;
    }
    headers_.resize(cells.back().column + 1);
    for (const WorksheetCell& cell : cells) {
        headers_[cell.column] = cell.text;
    }
    columns_.widen(headers_.size());
    reports_ = ImportRowReports(static_cast<std::int64_t>(headers_.size()));
}

}  // namespace sorvane
