#include "SorvaneCore/Prepare/Imputation/ImputationTable.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "SorvaneCore/Numerics/LinearAlgebra.h"

namespace sorvane {

std::optional<ImputationTable> ImputationTable::filledWithMeans(
    std::span<const NumericColumn> columns) {
    ImputationTable table;
    table.rowCount = columns.empty() ? 0 : columns.front().size();
    for (const NumericColumn& column : columns) {
        if (column.size() != table.rowCount) {
            return std::nullopt;
        }
        std::vector<double> values(table.rowCount);
        std::vector<std::size_t> observed;
        std::vector<std::size_t> missing;
        double sum = 0.0;
        for (std::size_t row = 0; row < table.rowCount; ++row) {
            const std::optional<double> value = column[row];
            (value ? observed : missing).push_back(row);
            values[row] = value.value_or(0.0);
            sum += values[row];
        }
        for (const std::size_t row : missing) {
            values[row] = sum / static_cast<double>(observed.size());
        }
        table.columns.push_back(std::move(values));
        table.observedRows.push_back(std::move(observed));
        table.missingRows.push_back(std::move(missing));
    }
    return table;
}

CompletedColumns ImputationTable::completed() const {
    CompletedColumns result(columns.size());
    for (std::size_t column = 0; column < columns.size(); ++column) {
        if (isExcluded(column)) {
            result[column].resize(rowCount);
        } else {
            result[column].assign(columns[column].begin(), columns[column].end());
        }
    }
    return result;
}

std::optional<ColumnPrediction> predictColumn(const ImputationTable& table, std::size_t target) {
    std::vector<const std::vector<double>*> predictors;
    for (std::size_t column = 0; column < table.columns.size(); ++column) {
        if (column != target && !table.isExcluded(column)) {
            predictors.push_back(&table.columns[column]);
        }
    }
    const std::vector<std::size_t>& rows = table.observedRows[target];
    const std::size_t cols = predictors.size() + 1;
    std::vector<double> design;
    std::vector<double> outcome;
    design.reserve(rows.size() * cols);
    outcome.reserve(rows.size());
    for (const std::size_t row : rows) {
        design.push_back(1.0);
        for (const std::vector<double>* predictor : predictors) {
            design.push_back((*predictor)[row]);
        }
        outcome.push_back(table.columns[target][row]);
    }
    const auto factors = LinearAlgebra::qrDecompose(design, rows.size(), cols);
    const auto coefficients =
        factors ? LinearAlgebra::solveUpperTriangular(factors->rFactor, cols, factors->qtb(outcome))
                : std::nullopt;
    if (!coefficients) {
        return std::nullopt;
    }
    ColumnPrediction prediction{
        .predicted = std::vector<double>(table.rowCount, coefficients->front()),
        .coefficientCount = cols};
    for (std::size_t j = 0; j < predictors.size(); ++j) {
        const double slope = (*coefficients)[j + 1];
        for (std::size_t row = 0; row < table.rowCount; ++row) {
            prediction.predicted[row] += slope * (*predictors[j])[row];
        }
    }
    const bool isFinite = std::ranges::all_of(prediction.predicted,
                                              [](double value) { return std::isfinite(value); });
    return isFinite ? std::optional(std::move(prediction)) : std::nullopt;
}

}  // namespace sorvane
