#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/ImportRows.h"
#include "SorvaneCore/Dataset/TextColumnBuilder.h"
#include "SorvaneCore/Dataset/TextTable.h"

namespace sorvane {

/// Rows of any width made into a table of `columnCount` columns, each with its report.
class NormalizedRows {
public:
    explicit NormalizedRows(std::size_t columnCount);

    /// Adds a row, padded with empty cells or cut. A row of missing cells alone must have been
    /// dropped before.
    ///
    /// Input      `cells` at least up to the width; `cellCount` is the width found
    void add(std::int64_t sourceRowNumber,
             std::span<const std::string_view> cells,
             std::size_t cellCount);
    /// The rows of `next` after these, their source numbers raised by `numberShift`.
    void append(NormalizedRows&& next, std::int64_t numberShift, unsigned threads);
    /// How many rows there may be in the end.
    void expectRows(std::size_t rows);

    std::size_t size() const { return reports_.size(); }
    const ImportRowReports& reports() const { return reports_; }
    /// The table of all rows so far; afterwards there is only the record of its reports.
    TextTable finish();

private:
    std::vector<TextColumnBuilder> columns_;
    ImportRowReports reports_;
};

}  // namespace sorvane
