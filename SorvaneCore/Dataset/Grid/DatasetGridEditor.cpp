#include "SorvaneCore/Dataset/Grid/DatasetGridEditor.h"

#include <algorithm>
#include <limits>

#include "SorvaneCore/Dataset/TextColumnBuilder.h"
#include "SorvaneCore/Import/ImportReadinessBuilder.h"
#include "SorvaneCore/Import/RecordReader.h"
#include "SorvaneCore/Import/VariableClassifier.h"

namespace sorvane::DatasetGridEditor {

namespace {

/// Takes over what the user has settled about a variable.
void keepSettings(DataVariable& former, DataVariable& fresh) {
    fresh.id = former.id;
    fresh.label = std::move(former.label);
    fresh.valueLabels = std::move(former.valueLabels);
    fresh.assignedType = former.assignedType;
    fresh.assignedConstruct = std::move(former.assignedConstruct);
    fresh.scaleRange = former.scaleRange;
    fresh.includeInReliability = former.includeInReliability;
    fresh.includeInDescriptives = former.includeInDescriptives;
}

}  // namespace

std::vector<std::string> sanitizeHeaders(std::span<const std::string> headers) {
    return ImportReadinessBuilder::normalizedHeaders(headers).headers;
}

void refreshMetadata(ImportedDataset& dataset) {
    std::vector<DataVariable> fresh = VariableClassifier().classify(dataset.headers, dataset.rows);
    for (std::size_t i = 0; i < std::min(fresh.size(), dataset.variables.size()); ++i) {
        keepSettings(dataset.variables[i], fresh[i]);
    }
    dataset.variables = std::move(fresh);
    ImportReadinessMetadata& former = dataset.importMetadata;
    ImportReadinessMetadata metadata = ImportReadinessBuilder::metadata(
        {.sourceKind = former.sourceKind, .worksheetName = former.worksheetName}, dataset.headers,
        dataset.rows, {}, {});
    metadata.notes = std::move(former.notes);
    metadata.cautions = std::move(former.cautions);
    former = std::move(metadata);
}

void setCell(ImportedDataset& dataset, std::size_t row, std::size_t column, std::string_view text) {
    dataset.rows.replaceColumn(column, dataset.rows.column(column).replacing(row, text));
    refreshMetadata(dataset);
}

void resizeRows(ImportedDataset& dataset, std::size_t rowCount) {
    dataset.rows.resizeRows(rowCount);
    refreshMetadata(dataset);
}

void appendColumns(ImportedDataset& dataset, std::span<const std::string> headers) {
    for (const std::string& header : headers) {
        dataset.headers.push_back(header);
        dataset.rows.appendColumn(TextColumn::blank(dataset.rows.rowCount()));
    }
    refreshMetadata(dataset);
}

void writeBlock(ImportedDataset& dataset,
                std::size_t row,
                std::size_t column,
                std::span<const std::vector<std::string>> cells) {
    std::size_t width = 0;
    for (const std::vector<std::string>& line : cells) {
        width = std::max(width, line.size());
    }
    for (std::size_t j = 0; j < width; ++j) {
        const TextColumn& former = dataset.rows.column(column + j);
        TextColumnBuilder builder;
        builder.expectRows(former.size());
        for (std::size_t i = 0; i < former.size(); ++i) {
            const bool isWritten = i >= row && i - row < cells.size() && j < cells[i - row].size();
            builder.append(isWritten ? std::string_view(cells[i - row][j]) : former[i]);
        }
        dataset.rows.replaceColumn(column + j, builder.finish());
    }
    refreshMetadata(dataset);
}

std::vector<std::vector<std::string>> pastedCells(std::string_view text) {
    std::vector<std::vector<std::string>> cells;
    RecordReader reader(text, '\t', 0);
    RecordReader::Record record;
    while (reader.read(record, std::numeric_limits<std::size_t>::max())) {
        cells.emplace_back(record.cells.begin(), record.cells.end());
    }
    if (!cells.empty() && cells.back() == std::vector<std::string>{""}) {
        cells.pop_back();
    }
    return cells;
}

}  // namespace sorvane::DatasetGridEditor
