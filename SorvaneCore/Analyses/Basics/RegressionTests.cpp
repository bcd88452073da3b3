#include "SorvaneCore/Analyses/Basics/RegressionTests.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
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
    std::vector<double> deviations{};
};

CentredColumn centred(std::vector<double> values) {
    CentredColumn column{.deviations = std::move(values)};
    if (!column.deviations.empty()) {
        column.mean = SampleMoments::mean(column.deviations);
    }
    const double largest = SampleMoments::largestMagnitude(column.deviations);
    for (double& value : column.deviations) {
        value -= column.mean;
    }
    SampleMoments::clearRounding(column.deviations, largest);
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

/// The fit of the columns as they are, intercept first.
struct Solution {
    std::vector<double> estimates{};
    /// Of the estimates, but for the error variance.
    std::vector<double> variances{};
    /// Sums of squares about the mean; that of the intercept is not used.
    std::vector<double> predictorSquares{};
    double explainedSquares = 0.0;
    double residualSquares = 0.0;

    double totalSquares() const { return explainedSquares + residualSquares; }
};

/// Carries the intercept of the centred columns over to the columns as they are.
void uncentreIntercept(Solution& solution,
                       const Design& design,
                       const std::vector<double>& covariance) {
    const std::size_t size = solution.estimates.size();
    // The gradient of the intercept: 1, then minus the means.
    std::vector<double> gradient(size, 1.0);
    solution.estimates[0] += design.outcome.mean;
    for (std::size_t j = 1; j < size; ++j) {
        gradient[j] = -design.predictors[j - 1].mean;
        solution.estimates[0] += gradient[j] * solution.estimates[j];
    }
    solution.variances[0] = 0.0;
    for (std::size_t i = 0; i < size; ++i) {
        for (std::size_t j = 0; j < size; ++j) {
            solution.variances[0] += gradient[i] * covariance[i * size + j] * gradient[j];
        }
    }
}

/// The rows of R and Q'b below the intercept's hold what the columns vary about their means.
void fillSquares(Solution& solution, const TallLeastSquares::Reduction& reduction) {
    const std::size_t size = reduction.cols;
    solution.predictorSquares.assign(size, 0.0);
    for (std::size_t k = 1; k < size; ++k) {
        for (std::size_t j = k; j < size; ++j) {
            const double entry = reduction.rFactor[k * size + j];
            solution.predictorSquares[j] += entry * entry;
        }
        solution.explainedSquares += reduction.qtb[k] * reduction.qtb[k];
    }
    solution.residualSquares = reduction.residualSumOfSquares;
}

std::optional<Solution> solved(const Design& design) {
    const std::vector<double> ones(design.rows(), 1.0);
    std::vector<std::span<const double>> columns = {ones};
    for (const CentredColumn& predictor : design.predictors) {
        columns.emplace_back(predictor.deviations);
    }
    const std::size_t size = columns.size();
    const auto reduction = TallLeastSquares::reduceColumns(columns, design.outcome.deviations);
    if (!reduction) {
        return std::nullopt;
    }
    const auto estimates =
        LinearAlgebra::solveUpperTriangular(reduction->rFactor, size, reduction->qtb);
    const auto covariance = LinearAlgebra::covarianceFactorFromR(reduction->rFactor, size);
    if (!estimates || !covariance) {
        return std::nullopt;
    }
    Solution solution{.estimates = *estimates};
    for (std::size_t j = 0; j < size; ++j) {
        solution.variances.push_back((*covariance)[j * size + j]);
    }
    uncentreIntercept(solution, design, *covariance);
    fillSquares(solution, *reduction);
    return solution;
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
                                  const RegressionOptions& options) {
    const auto n = static_cast<double>(design.rows());
    const auto p = static_cast<double>(design.predictors.size());
    const double df = n - p - 1.0;
    const double total = solution.totalSquares();
    const double meanSquare = df > 0.0 ? solution.residualSquares / df : nan;
    const double rSquared = total > 0.0 ? 1.0 - solution.residualSquares / total : nan;
    MultipleRegressionResult result{
        .n = static_cast<std::int64_t>(design.rows()),
        .predictorCount = static_cast<std::int64_t>(design.predictors.size()),
        .rSquared = rSquared,
        .adjustedRSquared = df > 0.0 ? 1.0 - (1.0 - rSquared) * (n - 1.0) / df : nan,
        .fStatistic = solution.explainedSquares / p / meanSquare,
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
                (std::sqrt(solution.predictorSquares[j]) / std::sqrt(total));
        }
    }
    result.readiness = readiness(result, design.totalRows);
    return result;
}

std::optional<MultipleRegressionResult> fit(const Design& design,
                                            const RegressionOptions& options) {
    // The mean of values of which one is not finite is not finite either.
    const std::optional<Solution> solution =
        std::isfinite(design.outcome.mean) ? solved(design) : std::nullopt;
    return solution ? std::optional(resultOf(design, *solution, options)) : std::nullopt;
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
