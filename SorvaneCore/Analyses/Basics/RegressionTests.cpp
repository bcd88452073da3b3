#include "SorvaneCore/Analyses/Basics/RegressionTests.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Numerics/ColumnKernels.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Numerics/TallLeastSquares.h"

namespace sorvane::RegressionTests {

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double fewCasesPerPredictor = 10.0;
constexpr std::int64_t lowResidualDf = 19;

/// A column of the fit as deviations from its mean.
struct CentredColumn {
    double mean = 0.0;
    double sumOfSquares = 0.0;
    std::vector<double> deviations{};
};

CentredColumn centred(std::vector<double> values) {
    CentredColumn column{.deviations = std::move(values)};
    if (!column.deviations.empty()) {
        column.mean = SampleMoments::mean(column.deviations);
    }
    column.sumOfSquares = SampleMoments::sumOfSquares(column.deviations, column.mean);
    for (double& value : column.deviations) {
        value -= column.mean;
    }
    return column;
}

/// The predictors and the outcome of the rows that are fitted.
struct Design {
    std::vector<CentredColumn> predictors{};
    CentredColumn outcome{};
    /// Rows before listwise deletion.
    std::size_t totalRows = 0;

    std::size_t rows() const { return outcome.deviations.size(); }
};

/// Coefficients, intercept first, and their covariance but for the error variance.
struct Solution {
    std::vector<double> estimates;
    std::vector<double> variances;
};

/// Carries the intercept of the centred columns over to the columns as they are.
Solution uncentred(const Design& design,
                   std::vector<double> estimates,
                   const std::vector<double>& covariance) {
    const std::size_t size = estimates.size();
    Solution solution{.estimates = std::move(estimates), .variances = std::vector<double>(size)};
    // The gradient of the intercept: 1, then minus the means.
    std::vector<double> gradient(size, 1.0);
    solution.estimates[0] += design.outcome.mean;
    for (std::size_t j = 1; j < size; ++j) {
        gradient[j] = -design.predictors[j - 1].mean;
        solution.estimates[0] += gradient[j] * solution.estimates[j];
        solution.variances[j] = covariance[j * size + j];
    }
    for (std::size_t i = 0; i < size; ++i) {
        for (std::size_t j = 0; j < size; ++j) {
            solution.variances[0] += gradient[i] * covariance[i * size + j] * gradient[j];
        }
    }
    return solution;
}

double residualSumOfSquares(const Design& design, const std::vector<double>& estimates) {
    constexpr std::size_t blockRows = 512;
    std::array<double, blockRows> residuals;
    double sum = 0.0;
    for (std::size_t first = 0; first < design.rows(); first += blockRows) {
        const std::size_t count = std::min(blockRows, design.rows() - first);
        const double* outcome = &design.outcome.deviations[first];
        for (std::size_t i = 0; i < count; ++i) {
            residuals[i] = outcome[i] - estimates[0];
        }
        for (std::size_t j = 0; j < design.predictors.size(); ++j) {
            ColumnKernels::subtractScaled(estimates[j + 1], &design.predictors[j].deviations[first],
                                          residuals.data(), count);
        }
        sum += ColumnKernels::dot(residuals.data(), residuals.data(), count);
    }
    return sum;
}

AnalysisReadiness readiness(const MultipleRegressionResult& fit, std::size_t totalRows) {
    std::vector<AnalysisReadinessIssue> issues;
    const auto caution = [&issues](std::string message) {
        issues.push_back(AnalysisReadinessIssue::caution(std::move(message)));
    };
    const auto casesPerPredictor =
        static_cast<double>(fit.n) / static_cast<double>(fit.predictorCount);
    if (casesPerPredictor < fewCasesPerPredictor) {
        caution("There are fewer than 10 cases per predictor (" + NumberText::integer(fit.n) +
                " cases, " + NumberText::integer(fit.predictorCount) +
                " predictor(s)). Coefficient estimates may be unstable; treat this as "
                "exploratory.");
    }
    if (fit.dfResidual <= lowResidualDf) {
        caution("Residual degrees of freedom are low (" + NumberText::integer(fit.dfResidual) +
                "); standard errors and p-values are imprecise on a small sample.");
    }
    const std::int64_t dropped = static_cast<std::int64_t>(totalRows) - fit.n;
    if (dropped >= 1) {
        caution(NumberText::integer(dropped) +
                " row(s) were dropped by listwise deletion because the outcome or a predictor was "
                "missing.");
    }
    return AnalysisReadiness::of("more cases than coefficients, ideally 10+ cases per predictor",
                                 static_cast<std::int64_t>(totalRows), fit.n, std::move(issues));
}

RegressionCoefficient coefficient(
    std::string name, double estimate, double squaredError, double df, double tCritical) {
    const double error = std::sqrt(std::max(squaredError, 0.0));
    const double t = estimate / error;
    return {.name = std::move(name),
            .estimate = estimate,
            .standardError = error,
            .t = t,
            .pValue = MathDistributions::studentTPValue(t, df),
            .lowerBound = estimate - tCritical * error,
            .upperBound = estimate + tCritical * error};
}

MultipleRegressionResult resultOf(const Design& design,
                                  const Solution& solution,
                                  double residualSquares,
                                  const RegressionOptions& options) {
    const auto n = static_cast<double>(design.rows());
    const auto p = static_cast<double>(design.predictors.size());
    const double df = n - p - 1.0;
    const double total = design.outcome.sumOfSquares;
    const double meanSquare = df > 0.0 ? residualSquares / df : nan;
    const double rSquared = total > 0.0 ? 1.0 - residualSquares / total : nan;
    MultipleRegressionResult result{
        .n = static_cast<std::int64_t>(design.rows()),
        .predictorCount = static_cast<std::int64_t>(design.predictors.size()),
        .rSquared = rSquared,
        .adjustedRSquared = df > 0.0 ? 1.0 - (1.0 - rSquared) * (n - 1.0) / df : nan,
        .fStatistic = (total - residualSquares) / p / meanSquare,
        .dfModel = static_cast<std::int64_t>(p),
        .dfResidual = static_cast<std::int64_t>(df),
        .residualStandardError = std::sqrt(meanSquare)};
    result.pValue = MathDistributions::fRightTailPValue(result.fStatistic, p, df);
    const double tCritical = MathDistributions::studentTCritical(1.0 - options.confidenceLevel, df);
    for (std::size_t j = 0; j < solution.estimates.size(); ++j) {
        result.coefficients.push_back(
            coefficient(j == 0 ? "Intercept" : options.predictorNames[j - 1], solution.estimates[j],
                        meanSquare * solution.variances[j], df, tCritical));
        if (j > 0 && total > 0.0) {
            result.coefficients[j].standardizedEstimate =
                solution.estimates[j] *
                (std::sqrt(design.predictors[j - 1].sumOfSquares) / std::sqrt(total));
        }
    }
    result.readiness = readiness(result, design.totalRows);
    return result;
}

std::optional<MultipleRegressionResult> fit(const Design& design,
                                            const RegressionOptions& options) {
    const std::vector<double> ones(design.rows(), 1.0);
    std::vector<std::span<const double>> columns = {ones};
    for (const CentredColumn& predictor : design.predictors) {
        columns.emplace_back(predictor.deviations);
    }
    const auto reduction = TallLeastSquares::reduceColumns(columns, design.outcome.deviations);
    if (!reduction) {
        return std::nullopt;
    }
    auto estimates =
        LinearAlgebra::solveUpperTriangular(reduction->rFactor, columns.size(), reduction->qtb);
    const auto covariance =
        LinearAlgebra::covarianceFactorFromR(reduction->rFactor, columns.size());
    if (!estimates || !covariance) {
        return std::nullopt;
    }
    const double residualSquares = residualSumOfSquares(design, *estimates);
    const Solution solution = uncentred(design, std::move(*estimates), *covariance);
    return resultOf(design, solution, residualSquares, options);
}

}  // namespace

std::optional<MultipleRegressionResult> ordinaryLeastSquares(
    std::span<const std::span<const double>> predictors,
    std::span<const double> outcome,
    const RegressionOptions& options) {
    const auto fits = [outcome](std::span<const double> column) {
        return column.size() == outcome.size();
    };
    if (options.predictorNames.size() != predictors.size() ||
        !std::ranges::all_of(predictors, fits)) {
        return std::nullopt;
    }
    Design design{.outcome = centred({outcome.begin(), outcome.end()}),
                  .totalRows = outcome.size()};
    for (const std::span<const double> predictor : predictors) {
        design.predictors.push_back(centred({predictor.begin(), predictor.end()}));
    }
    return fit(design, options);
}

std::optional<MultipleRegressionResult> ordinaryLeastSquares(
    std::span<const NumericColumn> predictors,
    const NumericColumn& outcome,
    const RegressionOptions& options) {
    const auto fits = [&outcome](const NumericColumn& column) {
        return column.size() == outcome.size();
    };
    if (options.predictorNames.size() != predictors.size() ||
        !std::ranges::all_of(predictors, fits)) {
        return std::nullopt;
    }
    std::vector<const NumericColumn*> columns = {&outcome};
    for (const NumericColumn& predictor : predictors) {
        columns.push_back(&predictor);
    }
    const std::vector<std::uint32_t> rows = CompleteCases::rows(columns);
    Design design{.outcome = centred(CompleteCases::gathered(outcome, rows)),
                  .totalRows = outcome.size()};
    for (const NumericColumn& predictor : predictors) {
        design.predictors.push_back(centred(CompleteCases::gathered(predictor, rows)));
    }
    return fit(design, options);
}

}  // namespace sorvane::RegressionTests
