#include "SorvaneCore/Prepare/Imputation/ChainedImputation.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "SorvaneCore/Prepare/Imputation/NearestDonors.h"

namespace sorvane {

namespace {

/// The smallest uniform number of which a logarithm is taken.
constexpr double smallestUniform = 1e-300;

double residualDeviation(const ImputationTable& table,
                         std::size_t target,
                         const ColumnPrediction& fit) {
    const std::vector<std::size_t>& observed = table.observedRows[target];
    double squares = 0.0;
    for (const std::size_t row : observed) {
        const double residual = table.columns[target][row] - fit.predicted[row];
        squares += residual * residual;
    }
    const double df =
        static_cast<double>(observed.size()) - static_cast<double>(fit.coefficientCount);
    return std::sqrt(squares / std::max(df, 1.0));
}

ImputedMoments momentsOf(const std::vector<double>& values, const std::vector<std::size_t>& rows) {
    const auto n = static_cast<double>(rows.size());
    double mean = 0.0;
    for (const std::size_t row : rows) {
        mean += values[row] / n;
    }
    double squares = 0.0;
    for (const std::size_t row : rows) {
        squares += (values[row] - mean) * (values[row] - mean);
    }
    return {.mean = mean,
            .standardDeviation = rows.size() < 2 ? std::nan("") : std::sqrt(squares / (n - 1.0))};
}

}  // namespace

void ChainedImputation::sweep(std::size_t donorCount) {
    for (std::size_t column = 0; column < table.columns.size(); ++column) {
        if (table.isIncomplete(column)) {
            imputeVariableStep(column, donorCount);
        }
    }
}

std::vector<ImputedMoments> ChainedImputation::moments() const {
    std::vector<ImputedMoments> result(table.columns.size());
    for (std::size_t column = 0; column < result.size(); ++column) {
        if (table.isIncomplete(column)) {
            result[column] = momentsOf(table.columns[column], table.missingRows[column]);
        }
    }
    return result;
}

void ChainedImputation::imputeVariableStep(std::size_t target, std::size_t donorCount) {
    const std::optional<ColumnPrediction> fit = predictColumn(table, target);
    if (!fit) {
        ++stepsWithoutFit[target];
        return;
    }
    if (donorCount >= 1 && table.observedRows[target].size() > 1) {
        matchDonors(target, *fit, donorCount);
    } else {
        drawResiduals(target, *fit);
    }
}

void ChainedImputation::matchDonors(std::size_t target,
                                    const ColumnPrediction& fit,
                                    std::size_t donorCount) {
    const std::vector<std::size_t>& observed = table.observedRows[target];
    std::vector<double> predictions;
    predictions.reserve(observed.size());
    for (const std::size_t row : observed) {
        predictions.push_back(fit.predicted[row]);
    }
    NearestDonors donors(predictions, donorCount);
    std::vector<double>& values = table.columns[target];
    for (const std::size_t row : table.missingRows[target]) {
        const std::size_t choice = random.next() % donors.count();
        values[row] = values[observed[donors.donor(fit.predicted[row], choice)]];
    }
    draws += table.missingRows[target].size();
}

void ChainedImputation::drawResiduals(std::size_t target, const ColumnPrediction& fit) {
    const double sigma = residualDeviation(table, target, fit);
    for (const std::size_t row : table.missingRows[target]) {
        const double u1 = random.nextUnitDouble();
        const double u2 = random.nextUnitDouble();
        // Box and Muller's normal deviate.
        table.columns[target][row] =
            fit.predicted[row] + sigma * std::sqrt(-2.0 * std::log(std::max(u1, smallestUniform))) *
                                     std::cos(2.0 * std::numbers::pi * u2);
    }
    draws += 2 * table.missingRows[target].size();
}

}  // namespace sorvane
