#include "SorvaneCore/Analyses/AssumptionAudit/DenseColumns.h"

#include <algorithm>

#include "SorvaneCore/Analyses/Basics/CompleteCases.h"

namespace sorvane {

DenseColumns DenseColumns::of(std::span<const NumericColumn> predictors,
                              const NumericColumn* outcome) {
    std::vector<const NumericColumn*> columns;
    for (const NumericColumn& predictor : predictors) {
        columns.push_back(&predictor);
    }
    if (outcome) {
        columns.push_back(outcome);
    }
    const std::vector<std::uint32_t> rows = CompleteCases::rows(columns);
    DenseColumns dense;
    for (const NumericColumn& predictor : predictors) {
        dense.predictors.push_back(CompleteCases::gathered(predictor, rows));
    }
    if (outcome) {
        dense.outcome = CompleteCases::gathered(*outcome, rows);
    }
    return dense;
}

bool haveOneLength(std::span<const NumericColumn> predictors, std::size_t length) {
    return std::ranges::all_of(
        predictors, [length](const NumericColumn& column) { return column.size() == length; });
}

bool haveOneLength(std::span<const std::span<const double>> predictors, std::size_t length) {
    return std::ranges::all_of(
        predictors, [length](std::span<const double> column) { return column.size() == length; });
}

}  // namespace sorvane
