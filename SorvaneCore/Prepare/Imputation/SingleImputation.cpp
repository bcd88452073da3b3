#include <algorithm>
#include <optional>

#include "SorvaneCore/Prepare/Imputation/ImputationTable.h"

namespace sorvane::MultipleImputation {

namespace {

double median(std::vector<double> values) {
    std::ranges::sort(values);
    const std::size_t half = values.size() / 2;
    return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2.0;
}

}  // namespace

std::optional<CompletedColumns> meanImpute(std::span<const NumericColumn> columns) {
    const std::optional<ImputationTable> filled = ImputationTable::filledWithMeans(columns);
    return filled ? std::optional(filled->completed()) : std::nullopt;
}

std::optional<CompletedColumns> medianImpute(std::span<const NumericColumn> columns) {
    std::optional<ImputationTable> filled = ImputationTable::filledWithMeans(columns);
    if (!filled) {
        return std::nullopt;
    }
    ImputationTable& table = *filled;
    for (std::size_t column = 0; column < columns.size(); ++column) {
        if (table.isIncomplete(column)) {
            const double middle = median(columns[column].present());
            for (const std::size_t row : table.missingRows[column]) {
                table.columns[column][row] = middle;
            }
        }
    }
    return table.completed();
}

std::optional<CompletedColumns> regressionImpute(std::span<const NumericColumn> columns) {
    const std::optional<ImputationTable> filled = ImputationTable::filledWithMeans(columns);
    if (!filled) {
        return std::nullopt;
    }
    ImputationTable table = *filled;
    for (std::size_t column = 0; column < columns.size(); ++column) {
        const auto fit = table.isIncomplete(column) ? predictColumn(*filled, column) : std::nullopt;
        if (!fit) {
            continue;
        }
        for (const std::size_t row : table.missingRows[column]) {
            table.columns[column][row] = fit->predicted[row];
        }
    }
    return table.completed();
}

}  // namespace sorvane::MultipleImputation
