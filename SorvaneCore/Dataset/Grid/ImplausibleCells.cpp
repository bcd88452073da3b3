#include "SorvaneCore/Dataset/Grid/ImplausibleCells.h"

#include <algorithm>
#include <set>

#include "SorvaneCore/Dataset/TextColumnBuilder.h"
#include "SorvaneCore/Import/ImplausibleMagnitude.h"
#include "SorvaneCore/Import/ImportCautions.h"
#include "SorvaneCore/Import/ImportReadinessBuilder.h"
#include "SorvaneCore/Import/VariableClassifier.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::ImplausibleCells {

namespace {

/// 2 to the power 127 with the ten digits that cells of Stata files have.
constexpr std::string_view singlePrecisionMark = "1.701411835e+38";

bool isImplausible(std::string_view text) {
    const std::optional<double> number = NumberText::parse(text);
    return text == singlePrecisionMark || (number && isImplausibleMagnitude(*number));
}

TextTable::Column cleaned(const TextColumn& column) {
    std::vector<bool> isImplausibleLevel(column.levelCount());
    for (std::size_t level = 0; level < column.levelCount(); ++level) {
        isImplausibleLevel[level] = isImplausible(column.level(level));
    }
    TextColumnBuilder builder;
    builder.expectRows(column.size());
    for (std::size_t row = 0; row < column.size(); ++row) {
        builder.append(isImplausibleLevel[column.code(row)] ? std::string_view() : column[row]);
    }
    return builder.finish();
}

bool isSpoiled(const std::optional<ScaleRange>& range) {
    const auto spoils = [](const std::optional<double>& bound) {
        return bound && (isImplausibleMagnitude(*bound) ||
                         NumberText::general(*bound, 10) == singlePrecisionMark);
    };
    return range && (spoils(range->minimum) || spoils(range->maximum));
}

/// What the classifier says of the column now, in the place of what it said of it before.
std::vector<std::string> renewedWarnings(const DataVariable& former,
                                         const DataVariable& before,
                                         const DataVariable& now) {
    std::vector<std::string> warnings = now.warnings;
    for (const std::string& warning : former.warnings) {
        if (warning != ImportCautions::implausibleWarning() &&
            std::ranges::count(before.warnings, warning) == 0) {
            warnings.push_back(warning);
        }
    }
    return warnings;
}

/// The variable as the cells now are; what the user has settled stays.
///
/// Input      what the classifier says of the column as it was before and as it is now
DataVariable renewed(const DataVariable& former,
                     const DataVariable& before,
                     const DataVariable& now) {
    DataVariable variable = former;
    variable.missingCount = now.missingCount;
    variable.nonMissingCount = now.nonMissingCount;
    variable.uniqueCount = now.uniqueCount;
    variable.numericSummary = now.numericSummary;
    variable.sampleValues = now.sampleValues;
    variable.warnings = renewedWarnings(former, before, now);
    const bool hasInferredRole = former.assignedType == former.inferredType;
    if (now.inferredType != former.inferredType && hasInferredRole) {
        variable.assignedType = now.inferredType;
        variable.includeInReliability = now.includeInReliability;
        variable.includeInDescriptives = now.includeInDescriptives;
    }
    variable.inferredType = now.inferredType;
    if (isSpoiled(former.scaleRange) || former.scaleRange == before.scaleRange) {
        variable.scaleRange = now.scaleRange;
    }
    return variable;
}

void cleanColumn(ImportedDataset& dataset, std::size_t column) {
    const std::string& header = dataset.headers[column];
    DataVariable& variable = dataset.variables[column];
    const DataVariable before = VariableClassifier().classify(header, dataset.rows.column(column));
    dataset.rows.replaceColumn(column, cleaned(dataset.rows.column(column)));
    const DataVariable now = VariableClassifier().classify(header, dataset.rows.column(column));
    variable = renewed(variable, before, now);
}

/// Counts the cells anew; what the import had to tell stays.
void countCells(ImportedDataset& dataset) {
    ImportReadinessMetadata& former = dataset.importMetadata;
    ImportReadinessMetadata counted = ImportReadinessBuilder::metadata(
        {.sourceKind = former.sourceKind, .worksheetName = former.worksheetName}, dataset.headers,
        dataset.rows, former.rowSummaries.reports(), {});
    counted.issues = std::move(former.issues);
    counted.notes = std::move(former.notes);
    counted.cautions = std::move(former.cautions);
    former = std::move(counted);
}

/// Takes the cautions back; gives the columns that they name.
std::set<std::size_t> takenBack(ImportedDataset& dataset) {
    std::set<std::size_t> columns;
    std::optional<std::vector<ImportCaution>>& cautions = dataset.importMetadata.cautions;
    std::erase_if(*cautions, [&](const ImportCaution& caution) {
        const bool concerns = caution.kind == ImportCautionKind::implausibleMagnitude;
        for (std::size_t i = 0; concerns && i < caution.columnNames.size(); ++i) {
            if (const auto column = dataset.columnIndex(caution.columnNames[i])) {
                columns.insert(*column);
            }
        }
        return concerns;
    });
    if (cautions->empty()) {
        cautions.reset();
    }
    return columns;
}

}  // namespace

void setToMissing(ImportedDataset& dataset) {
    if (!dataset.importMetadata.cautions) {
        return;
    }
    for (const std::size_t column : takenBack(dataset)) {
        cleanColumn(dataset, column);
    }
    countCells(dataset);
}

}  // namespace sorvane::ImplausibleCells
