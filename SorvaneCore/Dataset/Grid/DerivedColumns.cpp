#include "SorvaneCore/Dataset/Grid/DerivedColumns.h"

#include "SorvaneCore/Import/ImportCautions.h"
#include "SorvaneCore/Import/ImportReadinessBuilder.h"
#include "SorvaneCore/Import/VariableClassifier.h"

namespace sorvane::DerivedColumns {

namespace {

TextTable::Column fitted(const TextTable::Column& values, std::size_t rowCount) {
    return values->size() == rowCount ? values : values->resized(rowCount);
}

}  // namespace

void refreshCounts(ImportedDataset& dataset) {
    ImportReadinessMetadata& former = dataset.importMetadata;
    ImportReadinessMetadata fresh = ImportReadinessBuilder::metadata(
        {.sourceKind = former.sourceKind, .worksheetName = former.worksheetName}, dataset.headers,
        dataset.rows, former.rowSummaries.reports(), {});
    fresh.issues = std::move(former.issues);
    fresh.notes = std::move(former.notes);
    fresh.cautions = std::move(former.cautions);
    former = std::move(fresh);
}

void append(ImportedDataset& dataset,
            const std::string& name,
            const TextTable::Column& values,
            VariableKind assignedType,
            const std::string& warning) {
    const TextTable::Column column = fitted(values, dataset.rows.rowCount());
    DataVariable variable = VariableClassifier().classify(name, *column);
    variable.inferredType = assignedType;
    variable.assignedType = assignedType;
    variable.includeInDescriptives = includedInDescriptivesByDefault(assignedType);
    variable.includeInReliability = false;
    variable.warnings = {warning};
    dataset.headers.push_back(name);
    dataset.rows.appendColumn(column);
    dataset.variables.push_back(std::move(variable));
    refreshCounts(dataset);
}

void replace(ImportedDataset& dataset,
             std::size_t column,
             const TextTable::Column& values,
             const std::string& warning) {
    const TextTable::Column cells = fitted(values, dataset.rows.rowCount());
    DataVariable& former = dataset.variables[column];
    DataVariable fresh = VariableClassifier().classify(former.name, *cells);
    fresh.id = former.id;
    fresh.label = std::move(former.label);
    fresh.assignedConstruct = std::move(former.assignedConstruct);
    fresh.assignedType = former.assignedType;
    fresh.includeInReliability = former.includeInReliability;
    fresh.includeInDescriptives = former.includeInDescriptives;
    fresh.warnings = {warning};
    former = std::move(fresh);
    dataset.rows.replaceColumn(column, cells);
    refreshCounts(dataset);
}

void rename(ImportedDataset& dataset, std::size_t column, const std::string& name) {
    ImportCautions::rename(dataset.importMetadata, dataset.headers[column], name);
    dataset.headers[column] = name;
    dataset.variables[column].name = name;
    if (column < dataset.importMetadata.columnSummaries.size()) {
        dataset.importMetadata.columnSummaries[column].header = name;
    }
}

void remove(ImportedDataset& dataset, std::size_t column) {
    ImportCautions::forget(dataset.importMetadata, dataset.headers[column]);
    const auto position = static_cast<std::ptrdiff_t>(column);
    dataset.headers.erase(dataset.headers.begin() + position);
    dataset.variables.erase(dataset.variables.begin() + position);
    dataset.rows.removeColumn(column);
    refreshCounts(dataset);
}

}  // namespace sorvane::DerivedColumns
