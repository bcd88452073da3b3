#include "SorvaneCore/Dataset/Grid/ImplausibleCells.h"

#include <algorithm>
#include <set>

#include "SorvaneCore/Dataset/Grid/DerivedColumns.h"
#include "SorvaneCore/Dataset/TextColumnBuilder.h"
#include "SorvaneCore/Import/ImplausibleMagnitude.h"
#include "SorvaneCore/Import/ImportCautions.h"
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

/// What the cells now say; what the user settled and what others warned of stays.
void describeAnew(DataVariable& variable, const TextColumn& former, const TextColumn& cells) {
    const VariableClassifier classifier;
    DataVariable fresh = classifier.classify(variable.name, cells);
    const std::vector<std::string> outdated = classifier.classify(variable.name, former).warnings;
    const std::string taken = ImportCautions::warning(ImportCautionKind::implausibleMagnitude);
    for (const std::string& warning : variable.warnings) {
        if (warning != taken && std::ranges::find(outdated, warning) == outdated.end()) {
            fresh.warnings.push_back(warning);
        }
    }
    if (variable.assignedType == variable.inferredType) {
        variable.assignedType = fresh.assignedType;
        variable.includeInReliability = fresh.includeInReliability;
        variable.includeInDescriptives = fresh.includeInDescriptives;
    }
    variable.inferredType = fresh.inferredType;
    variable.missingCount = fresh.missingCount;
    variable.nonMissingCount = fresh.nonMissingCount;
    variable.uniqueCount = fresh.uniqueCount;
    variable.numericSummary = fresh.numericSummary;
    variable.sampleValues = std::move(fresh.sampleValues);
    variable.warnings = std::move(fresh.warnings);
    if (isSpoiled(variable.scaleRange)) {
        variable.scaleRange = fresh.scaleRange;
    }
}

/// The columns that the import warned of; takes its cautions away.
std::set<std::size_t> takeCautions(ImportedDataset& dataset) {
    std::optional<std::vector<ImportCaution>>& cautions = dataset.importMetadata.cautions;
    std::set<std::size_t> columns;
    if (!cautions) {
        return columns;
    }
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
    const std::set<std::size_t> columns = takeCautions(dataset);
    for (const std::size_t column : columns) {
        const TextTable::Column former = dataset.rows.sharedColumn(column);
        dataset.rows.replaceColumn(column, cleaned(*former));
        describeAnew(dataset.variables[column], *former, dataset.rows.column(column));
    }
    if (!columns.empty()) {
        DerivedColumns::refreshCounts(dataset);
    }
}

}  // namespace sorvane::ImplausibleCells
