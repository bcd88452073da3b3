#include "SorvaneCore/Import/NormalizedRows.h"

#include <algorithm>

#include "SorvaneCore/Numerics/ParallelFor.h"

namespace sorvane {

NormalizedRows::NormalizedRows(std::size_t columnCount)
    : columns_(columnCount), reports_(static_cast<std::int64_t>(columnCount)) {}

void NormalizedRows::add(std::int64_t sourceRowNumber,
                         std::span<const std::string_view> cells,
                         std::size_t cellCount) {
    const std::size_t width = columns_.size();
    const std::size_t taken = std::min(cells.size(), width);
    for (std::size_t column = 0; column < taken; ++column) {
        columns_[column].append(cells[column]);
    }
    for (std::size_t column = taken; column < width; ++column) {
        columns_[column].append(std::string_view());
    }
    if (cellCount == width) {
        reports_.appendOrdinary(sourceRowNumber, 1);
    } else {
        reports_.append(ImportRowNormalizationReport::of(sourceRowNumber,
                                                         static_cast<std::int64_t>(cellCount),
                                                         static_cast<std::int64_t>(width)));
    }
}

void NormalizedRows::append(NormalizedRows&& next, std::int64_t numberShift, unsigned threads) {
    parallelFor(columns_.size(), threads, [&](std::size_t column) {
        columns_[column].append(std::move(next.columns_[column]));
    });
    reports_.append(next.reports_, numberShift);
}

void NormalizedRows::expectRows(std::size_t rows) {
    for (TextColumnBuilder& column : columns_) {
        column.expectRows(rows);
    }
}

TextTable NormalizedRows::finish() {
    std::vector<TextTable::Column> columns;
    columns.reserve(columns_.size());
    for (TextColumnBuilder& column : columns_) {
        columns.push_back(column.finish());
    }
    return {std::move(columns), reports_.size()};
}

}  // namespace sorvane
