#include "SorvaneCore/Dataset/Grid/ImplausibleCells.h"

#include <algorithm>
#include <set>

#include "SorvaneCore/Dataset/Grid/DatasetGridEditor.h"
#include "SorvaneCore/Dataset/TextColumnBuilder.h"
#include "SorvaneCore/Import/ImplausibleMagnitude.h"
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

/// What the cells now say, where the former range came from implausible ones.
void inferRange(DataVariable& variable) {
    if (isSpoiled(variable.scaleRange)) {
        variable.scaleRange = std::nullopt;
        if (variable.numericSummary) {
            variable.scaleRange = {.minimum = variable.numericSummary->minimum,
                                   .maximum = variable.numericSummary->maximum};
        }
    }
}

}  // namespace

void setToMissing(ImportedDataset& dataset) {
    std::optional<std::vector<ImportCaution>>& cautions = dataset.importMetadata.cautions;
    if (!cautions) {
        return;
    }
    std::set<std::size_t> columns;
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
    for (const std::size_t column : columns) {
        dataset.rows.replaceColumn(column, cleaned(dataset.rows.column(column)));
    }
    DatasetGridEditor::refreshMetadata(dataset);
    for (const std::size_t column : columns) {
        inferRange(dataset.variables[column]);
    }
}

}  // namespace sorvane::ImplausibleCells
