#include "SorvaneCore/Models/Mediation/MediationRegression.h"

#include <cmath>
#include <utility>

#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Numerics/ColumnKernels.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/MathDistributions.h"

namespace sorvane {

namespace {

/// Columns about their means, each divided by its length, row-major.
struct UnitColumns {
    std::size_t rows = 0;
    std::vector<double> cells{};
    std::vector<double> means{};
    std::vector<double> lengths{};

    std::size_t count() const { return means.size(); }
};

/// Absent where a column is constant.
std::optional<UnitColumns> unitColumns(std::span<const std::vector<double>* const> columns,
                                       std::size_t rows) {
    UnitColumns unit{.rows = rows, .cells = std::vector<double>(rows * columns.size())};
    for (std::size_t j = 0; j < columns.size(); ++j) {
        const std::vector<double>& column = *columns[j];
        const double mean = SampleMoments::mean(column);
        const double length = std::sqrt(SampleMoments::sumOfSquares(column, mean));
        if (!(length > 0.0)) {
            return std::nullopt;
        }
        for (std::size_t i = 0; i < rows; ++i) {
            unit.cells[i * columns.size() + j] = (column[i] - mean) / length;
        }
        unit.means.push_back(mean);
        unit.lengths.push_back(length);
    }
    return unit;
}

double squaredResiduals(const UnitColumns& unit,
                        std::span<const double> centred,
                        std::span<const double> slopes) {
    double sum = 0.0;
    for (std::size_t i = 0; i < unit.rows; ++i) {
        const double fitted =
            ColumnKernels::dot(&unit.cells[i * unit.count()], slopes.data(), unit.count());
        sum += (centred[i] - fitted) * (centred[i] - fitted);
    }
    return sum;
}

/// Takes slopes and their unscaled covariance back to the units of the columns, and the intercept
/// to where the columns are 0.
void setCoefficients(MediationRegression& fit,
                     const UnitColumns& unit,
                     std::span<const double> slopes,
                     std::span<const double> factor) {
    const std::size_t count = unit.count();
    const std::size_t width = count + 1;
    const double variance = fit.residualSumOfSquares / fit.residualDegreesOfFreedom;
    fit.covariance[0] = variance / static_cast<double>(unit.rows);
    for (std::size_t j = 0; j < count; ++j) {
        fit.coefficients[j + 1] = slopes[j] / unit.lengths[j];
        fit.coefficients[0] -= fit.coefficients[j + 1] * unit.means[j];
        for (std::size_t k = 0; k < count; ++k) {
            const double entry =
                variance * factor[j * count + k] / (unit.lengths[j] * unit.lengths[k]);
            fit.covariance[(j + 1) * width + k + 1] = entry;
            fit.covariance[j + 1] -= entry * unit.means[k];
            fit.covariance[0] += entry * unit.means[j] * unit.means[k];
        }
        fit.covariance[(j + 1) * width] = fit.covariance[j + 1];
    }
}

}  // namespace

std::optional<MediationRegression> MediationRegression::fit(
    std::span<const std::vector<double>* const> columns, std::span<const double> outcome) {
    const std::size_t count = columns.size();
    const std::size_t rows = outcome.size();
    if (rows <= count + 1) {
        return std::nullopt;
    }
    const std::optional<UnitColumns> unit = unitColumns(columns, rows);
    if (!unit) {
        return std::nullopt;
    }
    const double mean = SampleMoments::mean(outcome);
    std::vector<double> centred(outcome.begin(), outcome.end());
    for (double& value : centred) {
        value -= mean;
    }
    const auto qr = LinearAlgebra::qrDecompose(unit->cells, rows, count);
    if (!qr) {
        return std::nullopt;
    }
    const auto slopes = LinearAlgebra::solveUpperTriangular(qr->rFactor, count, qr->qtb(centred));
    const auto factor = LinearAlgebra::covarianceFactorFromR(qr->rFactor, count);
    if (!slopes || !factor) {
        return std::nullopt;
    }
    MediationRegression fit{.coefficients = std::vector<double>(count + 1, 0.0),
                            .covariance = std::vector<double>((count + 1) * (count + 1), 0.0),
                            .residualSumOfSquares = squaredResiduals(*unit, centred, *slopes),
                            .totalSumOfSquares = SampleMoments::sumOfSquares(outcome, mean),
                            .residualDegreesOfFreedom = static_cast<double>(rows - count - 1)};
    fit.coefficients[0] = mean;
    setCoefficients(fit, *unit, *slopes, *factor);
    return fit;
}

double MediationRegression::standardError(std::size_t coefficient) const {
    return std::sqrt(covariance[coefficient * coefficients.size() + coefficient]);
}

MediationPath MediationRegression::path(std::size_t coefficient, std::string label) const {
    MediationPath path{.label = std::move(label),
                       .estimate = coefficients[coefficient],
                       .standardError = standardError(coefficient)};
    if (path.standardError > 0.0) {
        path.t = path.estimate / path.standardError;
        path.pValue = MathDistributions::studentTPValue(path.t, residualDegreesOfFreedom);
    }
    return path;
}

}  // namespace sorvane
