#include "SorvaneCore/Dataset/Grid/DatasetGridEditor.h"

#include <algorithm>

#include "SorvaneCore/Import/ImportReadinessBuilder.h"
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

}  // namespace sorvane::DatasetGridEditor
