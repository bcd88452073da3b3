#include "SorvaneCore/Import/ImportReadinessBuilder.h"

#include <algorithm>
#include <unordered_map>

#include "SorvaneCore/Dataset/ColumnProfile.h"
#include "SorvaneCore/Dataset/MissingValue.h"
#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Import/NormalizedRows.h"
#include "SorvaneCore/Import/ProfiledColumns.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::ImportReadinessBuilder {

namespace {

using NumberText::integer;

std::string emptyHeaderMessage(std::int64_t column, const std::string& name) {
    return "Column " + integer(column) + " had a blank header and was named " + name + ".";
}

std::string duplicateHeaderMessage(std::string_view header,
                                   std::int64_t column,
                                   const std::string& name) {
    return "Duplicate header " + std::string(header) + " at column " + integer(column) +
           " was renamed " + name + ".";
}

std::string extraFieldsMessage(const ImportRowNormalizationReport& report) {
    return "Row " + integer(report.sourceRowNumber) + " has " + integer(report.extraFieldCount) +
           " more field(s) than the header; extra values were not imported.";
}

std::string paddedFieldsMessage(const ImportRowNormalizationReport& report) {
    return "Row " + integer(report.sourceRowNumber) + " has " + integer(report.paddedFieldCount) +
           " fewer field(s) than the header; missing cells were padded as blank.";
}

std::optional<ImportReadinessIssue> rowColumnMismatch(const ImportRowNormalizationReport& report) {
    if (report.extraFieldCount < 1 && report.paddedFieldCount < 1) {
        return std::nullopt;
    }
    return ImportReadinessIssue{.kind = ImportReadinessIssueKind::rowColumnMismatch,
                                .message = report.extraFieldCount >= 1
                                               ? extraFieldsMessage(report)
                                               : paddedFieldsMessage(report),
                                .sourceRowNumber = report.sourceRowNumber,
                                .expectedColumnCount = report.normalizedColumnCount,
                                .actualColumnCount = report.originalColumnCount};
}

std::map<std::string, std::int64_t> shownMarkers(const ColumnProfile& profile) {
    std::map<std::string, std::int64_t> markers;
    for (const auto& [marker, count] : profile.missingMarkers) {
        markers[MissingValue::displayMarker(marker).value_or(marker)] = count;
    }
    return markers;
}

ImportColumnSummary columnSummary(const std::string& header,
                                  const ColumnProfile& profile,
                                  std::size_t index) {
    return {.columnIndex = static_cast<std::int64_t>(index) + 1,
            .header = header,
            .missingCount = profile.missingCount,
            .nonMissingCount = profile.nonMissingCount,
            .uniqueNonMissingCount = profile.uniqueCount,
            .numericCount = profile.numericCount,
            .textCount = profile.nonMissingCount - profile.numericCount,
            .observedMissingMarkers = shownMarkers(profile),
            .sampleValues = profile.sampleValues,
            .numericSummary = profile.numericSummary};
}

/// The totals over the columns.
void addUp(ImportReadinessMetadata& metadata) {
    for (const ImportColumnSummary& column : metadata.columnSummaries) {
        metadata.missingCellCount += column.missingCount;
        for (const auto& [marker, count] : column.observedMissingMarkers) {
            metadata.observedMissingMarkers[marker] += count;
        }
    }
    metadata.totalCellCount = metadata.rowCount * metadata.columnCount;
    metadata.nonMissingCellCount = metadata.totalCellCount - metadata.missingCellCount;
}

}  // namespace

Headers normalizedHeaders(std::span<const std::string> headers) {
    Headers result;
    result.headers.reserve(headers.size());
    std::unordered_map<std::string, std::int64_t> seen;
    std::int64_t column = 0;
    for (const std::string& header : headers) {
        ++column;
        const std::string_view trimmed = UnicodeText::trimmed(header);
        std::string name = trimmed.empty() ? "Column " + integer(column) : std::string(trimmed);
        const std::int64_t count = ++seen[name];
        if (count > 1) {
            name += " " + integer(count);
        }
        if (trimmed.empty() || count > 1) {
            using enum ImportReadinessIssueKind;
            result.issues.push_back({.kind = trimmed.empty() ? emptyHeader : duplicateHeader,
                                     .message = trimmed.empty()
                                                    ? emptyHeaderMessage(column, name)
                                                    : duplicateHeaderMessage(trimmed, column, name),
                                     .columnIndex = column,
                                     .header = name});
        }
        result.headers.push_back(std::move(name));
    }
    return result;
}

Rows normalizeRows(std::span<const ImportSourceRow> rows, std::size_t columnCount) {
    NormalizedRows normalized(columnCount);
    std::vector<std::string_view> cells;
    for (const ImportSourceRow& row : rows) {
        if (meaningfulValueCount(row.values) >= 1) {
            cells.assign(row.values.begin(), row.values.end());
            normalized.add(row.sourceRowNumber, cells, cells.size());
        }
    }
    ImportRowReports reports = normalized.reports();
    return {.rows = normalized.finish(), .reports = std::move(reports)};
}

std::int64_t meaningfulValueCount(std::span<const std::string> values) {
    return std::count_if(values.begin(), values.end(),
                         [](const std::string& value) { return !MissingValue::isMissing(value); });
}

ImportReadinessMetadata metadata(const Source& source,
                                 std::span<const std::string> headers,
                                 const TextTable& rows,
                                 const ImportRowReports& rowReports,
                                 std::vector<ImportReadinessIssue> issues) {
    ImportReadinessMetadata result;
    result.sourceKind = source.sourceKind;
    result.worksheetName = source.worksheetName;
    result.columnCount = static_cast<std::int64_t>(headers.size());
    result.expectedColumnCount = result.columnCount;
    result.rowCount = static_cast<std::int64_t>(rows.rowCount());
    result.missingValueMarkers = MissingValue::displayMarkers();
    result.rowSummaries =
        ImportRowSummaries(rowReports.resized(rows.rowCount(), result.columnCount),
                           missingCellsPerRow(rows), result.columnCount);
    result.columnSummaries.reserve(headers.size());
    for (std::size_t column = 0; column < headers.size(); ++column) {
        result.columnSummaries.push_back(
            columnSummary(headers[column], rows.column(column).profile(), column));
    }
    addUp(result);
    result.issues = std::move(issues);
    for (const ImportRowReports::Deviation& deviation : rowReports.deviations()) {
        if (std::optional<ImportReadinessIssue> issue = rowColumnMismatch(deviation.report)) {
            result.issues.push_back(std::move(*issue));
        }
    }
    return result;
}

}  // namespace sorvane::ImportReadinessBuilder
