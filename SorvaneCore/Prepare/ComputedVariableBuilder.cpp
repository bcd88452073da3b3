#include "SorvaneCore/Prepare/ComputedVariableBuilder.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Prepare/DerivedValueFormatter.h"
#include "SorvaneCore/Prepare/RowTotals.h"

namespace sorvane::ComputedVariableBuilder {

namespace {

/// A share of the answers, rounded up.
double requiredAnswers(double share, std::size_t answers) {
    return std::ceil(std::clamp(share, 0.0, 1.0) * static_cast<double>(answers));
}

}  // namespace

std::vector<std::optional<double>> numericValues(std::span<const NumericColumn> matrix,
                                                 ComputedVariableMethod method,
                                                 double minimumCompletion) {
    const double required = requiredAnswers(minimumCompletion, matrix.size());
    std::vector<std::optional<double>> result;
    result.reserve(RowTotals::rowCount(matrix));
    RowTotals::forEach(matrix, [&](const RowTotal& total) {
        const auto valid = static_cast<double>(total.count);
        if (method == ComputedVariableMethod::validCount) {
            result.emplace_back(valid);
        } else if (total.count == 0 || valid < required) {
            result.emplace_back(std::nullopt);
        } else {
            result.emplace_back(method == ComputedVariableMethod::mean ? total.sum / valid
                                                                       : total.sum);
        }
    });
    return result;
}

std::vector<std::string> textValues(std::span<const NumericColumn> matrix,
                                    ComputedVariableMethod method,
                                    double minimumCompletion) {
    std::vector<std::string> cells;
    for (const std::optional<double>& value : numericValues(matrix, method, minimumCompletion)) {
        cells.push_back(value ? DerivedValueFormatter::text(*value) : std::string());
    }
    return cells;
}

}  // namespace sorvane::ComputedVariableBuilder
