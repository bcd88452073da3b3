#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/DataVariable.h"
#include "SorvaneCore/Dataset/ImportRows.h"

namespace sorvane {

enum class ImportSourceKind { csv, xlsx, blank, unknown };
BOOST_DESCRIBE_ENUM(ImportSourceKind, csv, xlsx, blank, unknown)

enum class ImportReadinessSeverity { warning, error };
BOOST_DESCRIBE_ENUM(ImportReadinessSeverity, warning, error)

enum class ImportReadinessIssueKind { emptyHeader, duplicateHeader, rowColumnMismatch };
BOOST_DESCRIBE_ENUM(ImportReadinessIssueKind, emptyHeader, duplicateHeader, rowColumnMismatch)

/// Something that the import repaired, in a full sentence for the user.
struct ImportReadinessIssue {
    ImportReadinessSeverity severity = ImportReadinessSeverity::warning;
    ImportReadinessIssueKind kind = ImportReadinessIssueKind::rowColumnMismatch;
    std::string message;
    /// Row number in the source, for row issues.
    std::optional<std::int64_t> sourceRowNumber = std::nullopt;
    /// Column number counted from 1, for header issues.
    std::optional<std::int64_t> columnIndex = std::nullopt;
    /// The final header, for header issues.
    std::optional<std::string> header = std::nullopt;
    /// For row issues: the normalised width and the width found.
    std::optional<std::int64_t> expectedColumnCount = std::nullopt;
    std::optional<std::int64_t> actualColumnCount = std::nullopt;

    bool operator==(const ImportReadinessIssue&) const = default;
};
BOOST_DESCRIBE_STRUCT(ImportReadinessIssue,
                      (),
                      (severity,
                       kind,
                       message,
                       sourceRowNumber,
                       columnIndex,
                       header,
                       expectedColumnCount,
                       actualColumnCount))

enum class ImportCautionKind { implausibleMagnitude, otherReferenceWidth };
BOOST_DESCRIBE_ENUM(ImportCautionKind, implausibleMagnitude, otherReferenceWidth)

/// Why columns must not be analysed as they came in, in a full sentence for the user.
struct ImportCaution {
    /// A number that no data hold, usually a mark for missing; or references to long texts of
    /// another width than they were read with, so that the columns may be shifted.
    ImportCautionKind kind = ImportCautionKind::implausibleMagnitude;
    std::string message;
    /// Final headers.
    std::vector<std::string> columnNames;

    bool operator==(const ImportCaution&) const = default;
};
BOOST_DESCRIBE_STRUCT(ImportCaution, (), (kind, message, columnNames))

/// What an import found in one column.
struct ImportColumnSummary {
    /// Counted from 1.
    std::int64_t columnIndex = 0;
    std::string header;
    std::int64_t missingCount = 0;
    std::int64_t nonMissingCount = 0;
    std::int64_t uniqueNonMissingCount = 0;
    std::int64_t numericCount = 0;
    std::int64_t textCount = 0;
    /// Marker to count; the empty marker stands under "(blank)".
    std::map<std::string, std::int64_t> observedMissingMarkers;
    std::vector<std::string> sampleValues;
    std::optional<NumericSummary> numericSummary = std::nullopt;

    bool operator==(const ImportColumnSummary&) const = default;
};
BOOST_DESCRIBE_STRUCT(ImportColumnSummary,
                      (),
                      (columnIndex,
                       header,
                       missingCount,
                       nonMissingCount,
                       uniqueNonMissingCount,
                       numericCount,
                       textCount,
                       observedMissingMarkers,
                       sampleValues,
                       numericSummary))

/// Provenance and readiness of a dataset: what was found in the source and what was repaired.
struct ImportReadinessMetadata {
    ImportSourceKind sourceKind = ImportSourceKind::unknown;
    std::optional<std::string> worksheetName = std::nullopt;
    std::int64_t expectedColumnCount = 0;
    std::int64_t rowCount = 0;
    std::int64_t columnCount = 0;
    std::int64_t totalCellCount = 0;
    std::int64_t missingCellCount = 0;
    std::int64_t nonMissingCellCount = 0;
    /// All markers as they are shown, however few were seen.
    std::vector<std::string> missingValueMarkers;
    std::map<std::string, std::int64_t> observedMissingMarkers;
    ImportRowSummaries rowSummaries;
    std::vector<ImportColumnSummary> columnSummaries;
    /// Header issues first, then row mismatches.
    std::vector<ImportReadinessIssue> issues;
    /// What the reader of a statistics file or survey package has to tell; absent for others.
    std::optional<std::vector<std::string>> notes = std::nullopt;
    /// Absent where there is none.
    std::optional<std::vector<ImportCaution>> cautions = std::nullopt;

    bool operator==(const ImportReadinessMetadata&) const = default;
};
BOOST_DESCRIBE_STRUCT(ImportReadinessMetadata,
                      (),
                      (sourceKind,
                       worksheetName,
                       expectedColumnCount,
                       rowCount,
                       columnCount,
                       totalCellCount,
                       missingCellCount,
                       nonMissingCellCount,
                       missingValueMarkers,
                       observedMissingMarkers,
                       rowSummaries,
                       columnSummaries,
                       issues,
                       notes,
                       cautions))

}  // namespace sorvane
