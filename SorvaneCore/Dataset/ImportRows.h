#pragma once

#include <boost/describe/class.hpp>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace sorvane {

/// A raw row as an importer hands it over, with the number it had in the source.
struct ImportSourceRow {
    std::int64_t sourceRowNumber = 0;
    std::vector<std::string> values;

    bool operator==(const ImportSourceRow&) const = default;
};

/// How one source row was made to fit the table's width.
struct ImportRowNormalizationReport {
    std::int64_t sourceRowNumber = 0;
    std::int64_t originalColumnCount = 0;
    std::int64_t normalizedColumnCount = 0;
    std::int64_t extraFieldCount = 0;
    std::int64_t paddedFieldCount = 0;

    bool operator==(const ImportRowNormalizationReport&) const = default;

    /// The report of a row of `originalColumnCount` cells in a table of `columnCount` columns.
    static ImportRowNormalizationReport of(std::int64_t sourceRowNumber,
                                           std::int64_t originalColumnCount,
                                           std::int64_t columnCount);
};
BOOST_DESCRIBE_STRUCT(ImportRowNormalizationReport,
                      (),
                      (sourceRowNumber,
                       originalColumnCount,
                       normalizedColumnCount,
                       extraFieldCount,
                       paddedFieldCount))

/// The reports of all kept rows, in order.
///
/// Only what deviates is stored: a row of the table's width whose source number follows its
/// predecessor's costs nothing.
class ImportRowReports {
public:
    ImportRowReports() = default;
    /// Reports of rows in a table of `columnCount` columns.
    explicit ImportRowReports(std::int64_t columnCount) : columnCount_(columnCount) {}

    void append(const ImportRowNormalizationReport& report);
    /// `count` rows of the table's width, numbered on from `sourceRowNumber`.
    void appendOrdinary(std::int64_t sourceRowNumber, std::size_t count);
    /// The reports of `next` after these, their source numbers raised by `numberShift`.
    void append(const ImportRowReports& next, std::int64_t numberShift);
    /// These reports for a table of `rowCount` rows: cut, or continued by rows of `columnCount`
    /// cells, the one at index i numbered i + 2 as a line after a header line.
    ImportRowReports resized(std::size_t rowCount, std::int64_t columnCount) const;

    std::size_t size() const { return size_; }
    ImportRowNormalizationReport operator[](std::size_t index) const;
    std::int64_t columnCount() const { return columnCount_; }

    struct Deviation {
        std::size_t index = 0;
        ImportRowNormalizationReport report;
        bool operator==(const Deviation&) const = default;
    };
    /// The rows that had to be cut or padded, in order.
    const std::vector<Deviation>& deviations() const { return deviations_; }

    bool operator==(const ImportRowReports&) const = default;

private:
    /// From row `index` on, source numbers run on from `sourceRowNumber`.
    struct NumberRun {
        std::size_t index = 0;
        std::int64_t sourceRowNumber = 0;
        bool operator==(const NumberRun&) const = default;
    };
    std::int64_t sourceRowNumber(std::size_t index) const;

    std::int64_t columnCount_ = 0;
    std::size_t size_ = 0;
    std::vector<NumberRun> runs_;
    std::vector<Deviation> deviations_;
};

/// What an import found in one data row.
struct ImportRowSummary {
    /// Counted from 1.
    std::int64_t dataRowIndex = 0;
    std::int64_t sourceRowNumber = 0;
    std::int64_t missingCount = 0;
    std::int64_t nonMissingCount = 0;
    std::int64_t originalColumnCount = 0;
    std::int64_t normalizedColumnCount = 0;
    std::int64_t extraFieldCount = 0;
    std::int64_t paddedFieldCount = 0;

    bool operator==(const ImportRowSummary&) const = default;
};
BOOST_DESCRIBE_STRUCT(ImportRowSummary,
                      (),
                      (dataRowIndex,
                       sourceRowNumber,
                       missingCount,
                       nonMissingCount,
                       originalColumnCount,
                       normalizedColumnCount,
                       extraFieldCount,
                       paddedFieldCount))

/// One summary per data row, put together at each read from the reports and a count per row.
class ImportRowSummaries {
public:
    ImportRowSummaries() = default;
    /// One missing count per row; `columnCount` headers.
    ImportRowSummaries(ImportRowReports reports,
                       std::vector<std::uint32_t> missingCounts,
                       std::int64_t columnCount);

    std::size_t size() const { return missingCounts_.size(); }
    bool empty() const { return missingCounts_.empty(); }
    ImportRowSummary operator[](std::size_t index) const;
    const ImportRowReports& reports() const { return reports_; }

    bool operator==(const ImportRowSummaries&) const = default;

private:
    ImportRowReports reports_;
    std::vector<std::uint32_t> missingCounts_;
    std::int64_t columnCount_ = 0;
};

}  // namespace sorvane
