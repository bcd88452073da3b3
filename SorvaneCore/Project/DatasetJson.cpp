#include "SorvaneCore/Project/DatasetJson.h"

#include <algorithm>
#include <utility>

#include "SorvaneCore/Import/ImportReadinessBuilder.h"

namespace sorvane {

namespace {

/// Line 1 of a source is taken to be its header line.
constexpr std::int64_t firstSourceRow = 2;

/// The member of an object, read as `T`; the error names it.
template <typename T>
T member(const Json& object, const char* name) {
    const Json* entry = record_json::memberOf(object, name);
    if (!entry) {
        throw RecordJsonError("is missing").within(name);
    }
    try {
        return fromJson<T>(*entry);
    } catch (const RecordJsonError& error) {
        throw error.within(name);
    }
}

ImportRowReports synthesizedReports(const std::vector<std::vector<std::string>>& rows,
                                    std::size_t columnCount) {
    const auto columns = static_cast<std::int64_t>(columnCount);
    ImportRowReports reports(columns);
    std::int64_t sourceRow = firstSourceRow;
    for (const std::vector<std::string>& row : rows) {
        reports.append(ImportRowNormalizationReport::of(
            sourceRow++, static_cast<std::int64_t>(row.size()), columns));
    }
    return reports;
}

}  // namespace

ImportRowSummaries JsonForm<ImportRowSummaries>::from(const Json& json) {
    const auto rows = fromJson<std::vector<ImportRowSummary>>(json);
    const std::int64_t columnCount = rows.empty() ? 0 : rows.front().normalizedColumnCount;
    ImportRowReports reports(columnCount);
    std::vector<std::uint32_t> missingCounts;
    for (const ImportRowSummary& row : rows) {
        reports.append({.sourceRowNumber = row.sourceRowNumber,
                        .originalColumnCount = row.originalColumnCount,
                        .normalizedColumnCount = row.normalizedColumnCount,
                        .extraFieldCount = row.extraFieldCount,
                        .paddedFieldCount = row.paddedFieldCount});
        if (!std::in_range<std::uint32_t>(row.missingCount)) {
            record_json::failWanting("a count of missing cells");
        }
        missingCounts.push_back(static_cast<std::uint32_t>(row.missingCount));
    }
    return {std::move(reports), std::move(missingCounts), columnCount};
}

ImportedDataset JsonForm<ImportedDataset>::from(const Json& json) {
    ImportedDataset dataset;
    dataset.name = member<std::string>(json, "name");
    dataset.headers = member<std::vector<std::string>>(json, "headers");
    const auto rows = member<std::vector<std::vector<std::string>>>(json, "rows");
    dataset.rows = TextTable::fromRows(rows, dataset.headers.size());
    dataset.variables = member<std::vector<DataVariable>>(json, "variables");
    if (!std::ranges::equal(dataset.variables, dataset.headers, {}, &DataVariable::name)) {
        throw RecordJsonError("needs one entry for each header, in their order")
            .within("variables");
    }
    const Json* metadata = record_json::memberOf(json, "importMetadata");
    if (metadata && !record_json::isNull(*metadata)) {
        dataset.importMetadata = member<ImportReadinessMetadata>(json, "importMetadata");
    } else {
        dataset.importMetadata =
            ImportReadinessBuilder::metadata({}, dataset.headers, dataset.rows,
                                             synthesizedReports(rows, dataset.headers.size()), {});
    }
    return dataset;
}

}  // namespace sorvane
