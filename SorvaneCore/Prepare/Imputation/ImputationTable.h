#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Prepare/Imputation/MultipleImputation.h"

namespace sorvane {

/// Columns under completion, and which of their cells were observed.
struct ImputationTable {
    std::size_t rowCount = 0;
    /// Every cell a number, but for columns without any observed one.
    std::vector<std::vector<double>> columns;
    /// Rows of each column, ascending.
    std::vector<std::vector<std::size_t>> observedRows;
    std::vector<std::vector<std::size_t>> missingRows;

    /// Missing cells filled with their column's mean.
    ///
    /// Failure    columns of other lengths -> absent
    static std::optional<ImputationTable> filledWithMeans(std::span<const NumericColumn> columns);

    bool isExcluded(std::size_t column) const { return observedRows[column].empty(); }
    /// Whether there is something to fill, and something to learn from.
    bool isIncomplete(std::size_t column) const {
        return !missingRows[column].empty() && !isExcluded(column);
    }
    CompletedColumns completed() const;
};

/// What the other columns predict of a column.
struct ColumnPrediction {
    /// One per row.
    std::vector<double> predicted;
    std::size_t coefficientCount = 0;
};

/// Least squares on the rows where the target was observed, by an intercept and all other columns
/// that are not excluded.
///
/// Failure    collinear columns, fewer rows than coefficients, or a prediction beyond all numbers
///            -> absent
std::optional<ColumnPrediction> predictColumn(const ImputationTable& table, std::size_t target);

}  // namespace sorvane
