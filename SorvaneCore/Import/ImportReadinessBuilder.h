#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/ImportReadiness.h"
#include "SorvaneCore/Dataset/TextTable.h"

/// Repairs headers and rows the same way for every importer, and records what was found.
///
/// An importer calls `normalizedHeaders`, `normalizeRows`, the classifier and then `metadata`.
namespace sorvane::ImportReadinessBuilder {

struct Headers {
    std::vector<std::string> headers;
    std::vector<ImportReadinessIssue> issues;

    bool operator==(const Headers&) const = default;
};
BOOST_DESCRIBE_STRUCT(Headers, (), (headers, issues))

/// Headers trimmed, named "Column j" where blank, and numbered where repeated ("Age 2").
///
/// Method     only the names before numbering are counted: "Age 2", "Age", "Age" gives "Age 2"
/// twice
Headers normalizedHeaders(std::span<const std::string> headers);

struct Rows {
    TextTable rows;
    ImportRowReports reports;

    bool operator==(const Rows&) const = default;
};

/// Rows of `columnCount` cells; those of missing cells alone are dropped without trace.
Rows normalizeRows(std::span<const ImportSourceRow> rows, std::size_t columnCount);

/// How many cells of a row are not missing.
std::int64_t meaningfulValueCount(std::span<const std::string> values);

struct Source {
    ImportSourceKind sourceKind = ImportSourceKind::unknown;
    /// For workbooks.
    std::optional<std::string> worksheetName = std::nullopt;
};

/// The record of an import.
///
/// Input      `rowReports` one per row; rows beyond them count as lines after a header line, of the
///            table's width. `issues` those of the headers
/// Method     the row mismatches come after the issues passed in
/// Cost       that of profiling the columns, when that has not been done, and O(rows)
ImportReadinessMetadata metadata(const Source& source,
                                 std::span<const std::string> headers,
                                 const TextTable& rows,
                                 const ImportRowReports& rowReports,
                                 std::vector<ImportReadinessIssue> issues);

}  // namespace sorvane::ImportReadinessBuilder
