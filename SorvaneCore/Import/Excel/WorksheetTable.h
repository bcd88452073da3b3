#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/ImportRows.h"
#include "SorvaneCore/Dataset/TextTable.h"
#include "SorvaneCore/Import/SparseTableBuilder.h"

namespace sorvane {

/// A cell of a worksheet's row.
struct WorksheetCell {
    /// Counted from 0.
    std::size_t column = 0;
    std::string_view text;
};

/// Takes a worksheet row by row and finds the table in it.
///
/// The first row with at least two values is the header; rows before it are lost, and so are rows
/// of missing cells alone.
class WorksheetTable {
public:
    /// Columns beyond it do not exist in worksheets (XFD).
    static constexpr std::size_t mostColumns = 16384;
    static constexpr std::int64_t mostRows = 1'048'576;

    /// A table of a worksheet that takes, with its shared strings, so many bytes.
    explicit WorksheetTable(std::size_t sourceBytes) : columns_(sourceBytes) {}

    /// Adds a row that has a value.
    ///
    /// Input      `cells` in ascending order of columns, at least one
    void add(std::int64_t sourceRowNumber, std::span<const WorksheetCell> cells);

    /// Whether header or rows would take far more than so many bytes can mean; no more rows are
    /// taken then.
    bool isTooLarge() const { return isTooLarge_ || columns_.isTooLarge(reports_.size()); }
    /// The header's cells, not yet made unique; empty before the header was met.
    const std::vector<std::string>& headers() const { return headers_; }
    const ImportRowReports& reports() const { return reports_; }
    /// The table of all rows so far; afterwards there is only the record of its reports.
    TextTable finish() { return columns_.finish(reports_.size()); }

private:
    void addHeader(std::span<const WorksheetCell> cells);

    bool isTooLarge_ = false;
    std::vector<std::string> headers_;
    SparseTableBuilder columns_;
    ImportRowReports reports_;
};

}  // namespace sorvane
